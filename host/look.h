#pragma once

#include <QFont>

/// How the host's windows look.
namespace Look {

constexpr int textPoints = 9; ///< of all but the panel's title

/// The application's font in this size.
QFont font(int points = textPoints);

/// Gives the application a dark palette, the style Fusion, and the font that the panel's title has.
void applyDark();

} // namespace Look
