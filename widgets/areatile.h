#pragma once

#include <functional>

class QBoxLayout;
class QWidget;

/// Adds a tile to a row of areas: a rounded box with the two angles in whole degrees, and a small
/// delete button that shows while the pointer is over it.
///
/// `row` holds the tiles, then `addButton`, then a spacer. It has room for three tiles: the third
/// hides `addButton`, and a caller adds none while that is hidden. The tile takes its width from
/// the maximum width of `addButton` and its height from the present one. A click on the delete
/// button deletes the tile at once and then calls `deleted`.
void insertAreaTile(QBoxLayout &row, QWidget &addButton, long startAngle, long endAngle,
                    const std::function<void()> &deleted);
