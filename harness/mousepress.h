#pragma once

class QPoint;
class QWidget;

/// Presses and releases the left mouse button at `place` in `widget`. The press may destroy the
/// widget.
void pressMouse(QWidget &widget, const QPoint &place);
