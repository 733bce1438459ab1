#pragma once

class QPoint;
class QWidget;

/// Presses and releases the left mouse button at `place` in `widget`, which the press may destroy.
void pressMouse(QWidget &widget, const QPoint &place);
