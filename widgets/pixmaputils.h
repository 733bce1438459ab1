#pragma once

#include <QPixmap>

class QSize;
class QString;

/// \file
/// Loads pictures from files and reads colours from the screen. Call these in the GUI thread.

/// Renders an SVG file, stretched to `size`, on a transparent background. Returns a transparent
/// pixmap if the file cannot be read or is not SVG, and a null pixmap if `size` is empty.
QPixmap loadSvgAsPixmap(const QString &path, const QSize &size);

/// Loads an image file once and caches it in QPixmapCache under `path`. Later calls return the
/// cached pixmap regardless of `size`, unless it was too large for the cache.
///
/// If `path` ends in "svg", the image is rendered at `size`. Other images are scaled to cover
/// `size`, or keep their own size if `size` is 0 x 0. The result is null, and cached, if the file
/// contains no image or if only one side of `size` is 0. If the file cannot be opened, the function
/// logs this and returns a null pixmap without caching it. The last argument is ignored.
QPixmap loadPixmapAutoFormat(const QString &path, QSize size, bool);

/// Removes the pixmap that loadPixmapAutoFormat() cached for the path `key`.
void removePixmapCache(const QString &key);

/// Writes the red, green and blue (0 to 255) of the pixel under the mouse pointer to `rgb[0]`,
/// `rgb[1]` and `rgb[2]`. Returns false and leaves `rgb` alone if the screen cannot be read.
bool pickScreenColor(int *rgb);
