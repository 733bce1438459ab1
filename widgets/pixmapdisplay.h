#pragma once

#include <QColor>
#include <QPixmap>
#include <QPointer>
#include <QRect>
#include <QTransform>
#include <QWidget>

#include <functional>
#include <memory>
#include <mutex>

class QPainter;
class QVariantAnimation;

/// Shows a picture that may arrive at any time and from any thread.
///
/// Except for setPixmap() everything belongs to the widget's own thread. No setter repaints or lays
/// the picture out anew: rotation, corners, background and hideLoading() show at the next repaint;
/// the scale mode, setPreviewForward() and setPixSize() at the next resize, or when a picture of
/// another size is painted.
///
/// \image html pixmapdisplay.png "Scale modes, turns, corners, and what there is without a picture"
class PixmapDisplay : public QWidget
{
    Q_OBJECT

public:
    /// How the picture is laid out in the widget.
    enum ScaleType : int {
        ScaleStretch =
            0, ///< fills the widget; the picture's aspect ratio is lost. Also any other value
        ScaleFit = 1,  ///< all of the picture, centred (default)
        ScaleFill = 2, ///< covers the widget, centred; what stands out is cut off
    };

    /// Without a picture: "Loading" until one comes.
    explicit PixmapDisplay(QWidget *parent = nullptr);
    ~PixmapDisplay() override;

    /// Sets the scale mode, and the picture's size ahead of the picture itself (default 0 x 0: not
    /// known, the picture's place is the whole widget).
    void setPixSize(int w, int h, ScaleType type);

    /// Sets the scale mode alone.
    void setScaleType(ScaleType type);

    /// Turns the picture about the widget's centre: 1 by 270 degrees, 2 by 180, 3 by 90
    /// (clockwise); any other value, as the default 0, not at all.
    void setPreviewOri(int ori);

    /// With false the picture is laid out, whatever the scale mode, so that it fits the widget once
    /// it is turned by a quarter turn. Default true.
    void setPreviewForward(bool forward);

    /// Radius in pixels of the widget's rounded corners, which turn with the picture. 0 or less,
    /// the default, is none.
    void setRoundCorder(int radius);

    /// Fills the widget behind the picture. Default transparent.
    void setBackground(QColor color);

    /// No more "Loading" while there is no picture. Cannot be undone.
    void hideLoading();

    /// Moves the picture, alone and unturned, from its place to `targetRect` in `durationMs`
    /// milliseconds; it then returns to its place. `onFinished` may be empty, may start another
    /// animation and may delete the widget. An animation under way is dropped, its callback not
    /// called.
    void startAnimation(QRect targetRect, std::function<void()> onFinished, int durationMs);

    /// Lays the picture out anew. Not to be called while another thread may set a picture.
    void updateDrawRect();

Q_SIGNALS:
    /// A left press that does not follow another within 200 ms.
    void onClick();

    /// A picture was set; emitted by the thread that set it.
    void updatePic();

public Q_SLOTS:
    /// Shows a copy of `pix` from the next repaint on, which it requests. Safe in any thread, also
    /// when the widget's own is about to delete the widget: the destructor waits until updatePic()
    /// is emitted. A receiver that is connected directly may paint the widget; it must not delete
    /// it, nor wait for the widget's own thread.
    void setPixmap(const QPixmap &pix);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// All that the kept rendering depends on.
    struct Look
    {
        qint64 picture = 0;
        QTransform turn;
        qreal scale = 0;
        QRect place;
        QSize size;

        bool operator==(const Look &other) const;
    };

    QTransform turn() const;
    void paintPicture(QPainter &painter, const QPixmap &picture);

    QSize pixSize{0, 0};
    std::unique_ptr<QPixmap> pixmap;
    /// Guards `pixmap`, and the widget's end from the thread that emits updatePic(). Recursive: a
    /// receiver in the same thread may paint.
    std::recursive_mutex mutex;
    QRect drawRect;
    bool previewForward = true;
    ScaleType scaleType = ScaleFit;
    int previewOri = 0;
    int roundCorner = 0;
    bool loadingHidden = false;
    QColor background = Qt::transparent;
    qint64 lastClickTime = 0;
    qint64 clickInterval = 200;
    QRect animRect;
    QPointer<QVariantAnimation> animation;
    QPixmap kept; ///< what is seen of the picture, in device pixels; null when painted directly
    Look keptLook;
};
