#pragma once

#include <QPixmap>

class QSize;
class QString;

/// \file
/// Pictures from files, and a colour from the screen. All of these belong to the GUI thread.

/// The document, stretched to exactly `size`, on a transparent ground. A file that cannot be read
/// or is not SVG leaves the pixmap transparent; an empty size gives a null pixmap.
QPixmap loadSvgAsPixmap(const QString &path, const QSize &size);

/// The image at `path`, remembered in QPixmapCache under that path: later calls return what the
/// first one made, whatever size they ask for, unless it was too large for the cache to take. A
/// name that ends in "svg" is rendered at exactly `size`; any other image is scaled so that it
/// covers `size`, or left as it is when that is 0 x 0. The result is null when the file holds no
/// image or just one side of `size` is 0 (both remembered), or when the file cannot be opened
/// (logged, not remembered). The last argument has no effect.
QPixmap loadPixmapAutoFormat(const QString &path, QSize size, bool);

/// Forgets what loadPixmapAutoFormat() remembers under the path `key`.
void removePixmapCache(const QString &key);

/// Reads the colour under the mouse pointer into the red, green and blue (0 to 255) of `rgb[0]` to
/// `rgb[2]`. False, with `rgb` untouched, when the screen cannot be read.
bool pickScreenColor(int *rgb);
