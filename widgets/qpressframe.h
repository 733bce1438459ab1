#pragma once

#include <QFrame>

/// A frame that acts as a button. It never draws a frame shape of its own; a style sheet's
/// background and border show.
///
/// \image html qpressframe.png "Two frames that count their clicks, with style sheets"
class QPressFrame : public QFrame
{
    Q_OBJECT

public:
    /// Draws nothing of its own.
    explicit QPressFrame(QWidget *parent);

    /// \name For styles to come
    /// Nothing is drawn from these yet.
    /// \{

    /// In pixels.
    void setCornerRadius(int radius);
    /// An animation, from a file.
    void setBackgroundGif(const QString &path, Qt::Alignment align);
    /// A film, from a file.
    void setBackgroundVideo(const QString &path, Qt::Alignment align);
    /// A picture, from a file.
    void setBackgroundPix(const QString &path, Qt::Alignment align);
    /// \}

Q_SIGNALS:
    /// A left press, at least 200 ms of wall-clock time after the left press before it.
    void clicked();
    /// The pointer has entered (true) or left (false).
    void hoverEvent(bool enter);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    qint64 lastPressTime = 0;   // ms since the epoch
    qint64 pressInterval = 200; // ms
    Qt::Alignment alignment = Qt::AlignCenter;
    int cornerRadius = 0;
};
