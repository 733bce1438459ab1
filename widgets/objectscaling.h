#pragma once

/// \file
/// Rescaling of widgets that were laid out in pixels.

class QObject;

/// Rescaling of a widget tree that was laid out in fixed pixels, for dense screens. Geometry,
/// minimum and maximum sizes, and icon sizes of plain push and tool buttons are multiplied by
/// `factor` (positive); fonts, margins, spacings and style sheets stay. The descent stops at
/// children that are not widgets.
namespace Talsen {

/// Scales every widget below `object`, then, if `resizeSelf` is not 0 and `object` is a widget,
/// that widget's own geometry and limits. An unlimited maximum of `object` itself is scaled like
/// any other: Qt clamps it and says so in a warning.
void updateObjectSize(QObject &object, double factor, int resizeSelf);

/// Scales every widget below `object`; `object` itself stays as it is.
void changeObjectSizeInner(const QObject &object, double factor);

} // namespace Talsen
