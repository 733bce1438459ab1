#pragma once

/// \file
/// Scaling of widgets that were laid out in pixels.

class QObject;

/// Scales widget trees that were laid out in fixed pixels, for screens with a higher density.
/// Multiplies geometry, minimum and maximum sizes, and the icon sizes of plain push and tool
/// buttons by `factor`, which must be positive. Fonts, margins, spacings and style sheets do not
/// change. Children that are not widgets are skipped, together with everything below them.
namespace Talsen {

/// Scales all widgets below `object`. If `resizeSelf` is not 0 and `object` is a widget, scales its
/// own geometry and size limits afterwards. This includes an unlimited maximum size, which Qt
/// clamps with a warning if the factor is above 1.
void updateObjectSize(QObject &object, double factor, int resizeSelf);

/// Scales all widgets below `object`, but not `object` itself.
void changeObjectSizeInner(const QObject &object, double factor);

} // namespace Talsen
