#pragma once

class QBoxLayout;
class QPressFrame;
class QPushButton;
class QWidget;

/// \file
/// A row of tiles that each show an area's two angles.
///
/// \image html areatile.png "Two areas and the add button"

/// The parts of a tile that the caller connects: let the frame's hoverEvent() show and hide the
/// button, and the button's clicked() remove the tile.
struct AreaTile
{
    QPressFrame *frame;        ///< in the row; owned by the row's widget
    QPushButton *deleteButton; ///< child of the frame; hidden at first
};

/// Adds a tile to a row: a rounded box with the two angles in whole degrees and a small delete
/// button. The application provides the button's icons as the resources ":/UI/icon_delete.svg" and
/// ":/UI/icon_delete_hover.svg".
///
/// `row` contains the tiles, then `addButton`, then a spacer. It has room for three tiles: the
/// third hides `addButton`. Do not add a tile while `addButton` is hidden. The tile is as wide as
/// the maximum width of `addButton` and as high as its current height.
AreaTile insertAreaTile(QBoxLayout &row, QWidget &addButton, long startAngle, long endAngle);

/// Deletes a tile and its button immediately, and shows `addButton` if it was hidden. May be called
/// in response to a signal of the tile or its button.
void removeAreaTile(QBoxLayout &row, QWidget &addButton, QPressFrame *tile);
