#pragma once

#include <QFont>

/// The dark look of the host and the gallery.
namespace Look {

constexpr int textPoints = 9; ///< font size of everything except the panel's title

/// The application's font in the size `points`.
QFont font(int points = textPoints);

/// Gives the application a dark palette, the style Fusion, and a font of the size of the panel's
/// title.
void applyDark();

} // namespace Look
