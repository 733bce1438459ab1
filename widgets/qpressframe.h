#pragma once

#include <QFrame>

/// A frame that acts as a button. It never draws the shape of a QFrame, but it shows the background
/// and border of a style sheet.
///
/// \image html qpressframe.png "Two frames with style sheets that count their clicks"
class QPressFrame : public QFrame
{
    Q_OBJECT

public:
    /// Draws nothing until a style sheet gives it a background or a border.
    explicit QPressFrame(QWidget *parent);

    /// \name Reserved
    /// These have no visible effect yet.
    /// \{

    /// Radius in pixels.
    void setCornerRadius(int radius);
    /// Path of an animation.
    void setBackgroundGif(const QString &path, Qt::Alignment align);
    /// Path of a video.
    void setBackgroundVideo(const QString &path, Qt::Alignment align);
    /// Path of a picture.
    void setBackgroundPix(const QString &path, Qt::Alignment align);
    /// \}

Q_SIGNALS:
    /// The left button was pressed, at least 200 ms after its previous press.
    void clicked();
    /// The pointer entered (true) or left (false).
    void hoverEvent(bool enter);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    qint64 lastPressTime = 0; // ms since the epoch
    Qt::Alignment alignment = Qt::AlignCenter;
    int cornerRadius = 0;
};
