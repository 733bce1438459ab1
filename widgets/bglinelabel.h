#pragma once

#include <QLabel>

/// A label with a dashed guide line behind its text: one piece of a dashed frame with round
/// corners.
///
/// Eight labels in the outer cells of a 3 x 3 grid form the frame. Locations number the cells in
/// reading order without the centre: 0 top-left, 1 top, 2 top-right, 3 left, 4 right,
/// 5 bottom-left, 6 bottom, 7 bottom-right.
///
/// \image html bglinelabel.png "Eight labels; those at the sides have text"
class BgLineLabel : public QLabel
{
    Q_OBJECT

public:
    /// Has no location, so no guide line.
    explicit BgLineLabel(QWidget *parent);

    /// Removes the first entry `location:N;` from `styleSheet`, stores N as the location, and
    /// applies the rest. Without such an entry the location does not change; if N is not a number,
    /// it becomes 0. Not virtual: a call through a QWidget pointer does none of this.
    ///
    /// "location" is found anywhere, even inside another word. The text after it is cut off after
    /// about 1000 characters.
    void setStyleSheet(const QString &styleSheet);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int location = -1; // no guide line outside 0 to 7
};
