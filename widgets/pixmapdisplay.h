#pragma once

#include <QColor>
#include <QPixmap>
#include <QPointer>
#include <QRect>
#include <QWidget>

#include <functional>
#include <memory>
#include <mutex>

class QPainter;
class QVariantAnimation;

/// Displays a picture that any thread may replace at any time.
///
/// Call all functions except setPixmap() in the widget's own thread. The setters neither repaint
/// nor lay out the picture again: rotation, corners, background and hideLoading() take
/// effect at the next repaint; scale mode, setPreviewForward() and setPixSize() at the next resize
/// or when a picture of another size is painted.
///
/// \image html pixmapdisplay.png "Scale modes, rotations, rounded corners, and no picture"
class PixmapDisplay : public QWidget
{
    Q_OBJECT

public:
    /// How the picture fits into the widget.
    enum ScaleType : int {
        ScaleStretch = 0, ///< stretched to fill the widget; also for any other value
        ScaleFit = 1,     ///< the whole picture, centred (default)
        ScaleFill = 2,    ///< covers the widget, centred and cropped
    };

    /// Shows "Loading" until the first picture arrives.
    explicit PixmapDisplay(QWidget *parent = nullptr);
    ~PixmapDisplay() override;

    /// Sets the scale mode, and the picture's size before the picture itself arrives. The default
    /// size, 0 x 0, means unknown; the picture's rectangle is then the whole widget.
    void setPixSize(int w, int h, ScaleType type);

    /// Sets only the scale mode.
    void setScaleType(ScaleType type);

    /// Rotates the picture clockwise about the widget's centre: 1 by 270 degrees, 2 by 180, 3 by
    /// 90. Any other value means no rotation. Default 0.
    void setPreviewOri(int ori);

    /// If false, the picture is laid out so that it fits the widget after a quarter turn,
    /// regardless of the scale mode. Default true.
    void setPreviewForward(bool forward);

    /// Radius in pixels of the rounded corners that clip the picture. The clip rotates with the
    /// picture. 0 or less means none. Default 0.
    void setRoundCorder(int radius);

    /// Colour behind the picture. Default transparent.
    void setBackground(QColor color);

    /// Stops showing "Loading" while there is no picture. Cannot be undone.
    void hideLoading();

    /// Moves the picture from its rectangle to `targetRect` in `durationMs` milliseconds, without
    /// rotation, corners or background; then it jumps back. `onFinished` may be empty, may start
    /// another animation, and may delete the widget. A running animation is dropped without calling
    /// its callback.
    void startAnimation(QRect targetRect, std::function<void()> onFinished, int durationMs);

    /// Lays out the picture again. Do not call this while another thread may set a picture.
    void updateDrawRect();

Q_SIGNALS:
    /// The left button was pressed, at least 200 ms after its previous press.
    void onClick();

    /// A picture was set. Emitted in the thread that set it.
    void updatePic();

public Q_SLOTS:
    /// Stores a copy of `pix` and requests a repaint. Any thread may call this, even while the
    /// widget's thread is about to delete the widget: the destructor waits until updatePic() has
    /// been emitted. A directly connected receiver may paint the widget, but must not delete it or
    /// wait for the widget's thread.
    void setPixmap(const QPixmap &pix);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void paintPicture(QPainter &painter, const QPixmap &picture) const;

    QSize pixSize{0, 0};
    std::unique_ptr<QPixmap> pixmap;
    /// Guards `pixmap`, and delays the destructor while another thread emits updatePic().
    /// Recursive: a receiver in the same thread may paint.
    std::recursive_mutex mutex;
    QRect drawRect;
    bool previewForward = true;
    ScaleType scaleType = ScaleFit;
    int previewOri = 0;
    int roundCorner = 0;
    bool loadingHidden = false;
    QColor background = Qt::transparent;
    qint64 lastPressTime = 0; // ms since the epoch
    QRect animRect;
    QPointer<QVariantAnimation> animation;
};
