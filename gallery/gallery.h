#pragma once

#include <QPixmap>
#include <QWidget>

class PixmapDisplay;
class QGridLayout;
class QScrollArea;
class QSlider;

/// A window with every widget of the toolkit in each of its states, scaled by 1 to 3. Each kind of
/// widget has a QGroupBox, whose object name is that of the header without ".h". Sets the
/// application's font. Rebuilds its content when the scale or the picture changes.
class Gallery : public QWidget
{
    Q_OBJECT
public:
    /// Shows a built-in picture.
    Gallery();

    /// Shows the picture in the file `path`. If it cannot be read, changes nothing and returns a
    /// sentence for the user; otherwise returns an empty string.
    QString setPicture(const QString &path);

    /// The size that shows all of the content at the current scale.
    QSize sizeHint() const override;

private:
    void addDisplays(QGridLayout &grid);
    void rebuild();

    QPixmap m_picture;
    QSlider *m_scale; ///< in tenths
    QScrollArea *m_scroll;
    PixmapDisplay *m_animated = nullptr;
};
