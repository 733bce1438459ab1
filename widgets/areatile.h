#pragma once

class QBoxLayout;
class QPressFrame;
class QPushButton;
class QWidget;

/// \file
/// A row of areas, each with its two angles.
///
/// \image html areatile.png "Two areas, and the button that adds one"

/// What a tile's maker connects: the frame's hoverEvent() shows and hides the button, the button's
/// clicked() removes the tile.
struct AreaTile
{
    QPressFrame *frame;        ///< in the row, which owns it
    QPushButton *deleteButton; ///< on the frame; hidden at first
};

/// Adds a tile to a row of areas: a rounded box with the two angles in whole degrees, and a small
/// delete button. The button's two pictures are the application's: ":/UI/icon_delete.svg" and
/// ":/UI/icon_delete_hover.svg".
///
/// `row` holds the tiles, then `addButton`, then a spacer. It has room for three tiles: the third
/// hides `addButton`, and a caller adds none while that is hidden. The tile takes its width from
/// the maximum width of `addButton` and its height from the present one.
AreaTile insertAreaTile(QBoxLayout &row, QWidget &addButton, long startAngle, long endAngle);

/// Deletes a tile at once, with the button on it, and shows `addButton` again if it was hidden.
/// Also from within a signal of the tile or its button.
void removeAreaTile(QBoxLayout &row, QWidget &addButton, QPressFrame *tile);
