#pragma once

#include <QLabel>

/// A label over a dashed guide line: one piece of a dashed, round-cornered frame.
///
/// Eight of them in the outer cells of a 3 x 3 grid make up the frame. Their locations follow the
/// cells in reading order, skipping the centre: 0 top-left, 1 top, 2 top-right, 3 left, 4 right,
/// 5 bottom-left, 6 bottom, 7 bottom-right.
///
/// \image html bglinelabel.png "Eight labels; those of the sides have a text"
class BgLineLabel : public QLabel
{
    Q_OBJECT

public:
    /// Without a location, and so without a guide.
    explicit BgLineLabel(QWidget *parent);

    /// Takes the entry `location:N;` out of `styleSheet`, keeps N, and applies the rest. Without
    /// such an entry the location stays as it is; an N that is no number counts as 0. Only a call
    /// through a BgLineLabel does this, QWidget's function of the same name does not.
    ///
    /// The word "location" counts wherever it stands, and no more than 1000 characters are taken
    /// over after it.
    void setStyleSheet(const QString &styleSheet);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int location = -1; // outside 0 to 7: no guide
};
