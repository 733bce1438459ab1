#pragma once

#include <QPixmap>
#include <QWidget>

class PixmapDisplay;
class QGridLayout;
class QScrollArea;
class QSlider;

/// A window with every widget of the toolkit in each of its states, at one to three times its size:
/// a QGroupBox for each, named after its header in widgets/. It sets the application's font. A
/// change of the scale or the picture builds the content anew.
class Gallery : public QWidget
{
    Q_OBJECT
public:
    /// Starts with a picture of its own.
    Gallery();

    /// Shows the picture in the file `path`. If that cannot be read, nothing changes and a sentence
    /// for the user is returned; else the result is empty.
    QString setPicture(const QString &path);

    /// Has room for all of the content at its present scale.
    QSize sizeHint() const override;

private:
    void addDisplays(QGridLayout &grid);
    void rebuild();

    QPixmap m_picture;
    QSlider *m_scale; ///< in tenths
    QScrollArea *m_scroll;
    PixmapDisplay *m_animated = nullptr;
};
