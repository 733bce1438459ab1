#include "pixmapdisplay.h"

#include "pressinterval.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QStyleOption>
#include <QVariantAnimation>

#include <utility>

namespace {

float ratio(int numerator, int denominator)
{
    return static_cast<float>(numerator) / static_cast<float>(denominator);
}

int scaled(int length, int numerator, int denominator)
{
    return static_cast<int>(qint64(length) * numerator / denominator);
}

void drawInto(QPainter &painter, const QRect &place, const QPixmap &picture)
{
    painter.drawPixmap(QRectF(place), picture, QRectF(picture.rect()));
}

} // namespace

PixmapDisplay::PixmapDisplay(QWidget *parent)
    : QWidget(parent)
{
    connect(this, SIGNAL(updatePic()), this, // clazy:exclude=old-style-connect
            SLOT(update()), Qt::QueuedConnection);
}

PixmapDisplay::~PixmapDisplay()
{
    // Wait for a worker that is emitting updatePic().
    const std::lock_guard<std::recursive_mutex> lock(mutex);
}

void PixmapDisplay::setPixmap(const QPixmap &pix)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    pixmap = std::make_unique<QPixmap>(pix);
    Q_EMIT updatePic(); // under the lock: the widget may be deleted once it is released
}

void PixmapDisplay::setPixSize(int w, int h, ScaleType type)
{
    pixSize = QSize(w, h);
    scaleType = type;
}

void PixmapDisplay::setScaleType(ScaleType type)
{
    scaleType = type;
}

void PixmapDisplay::setPreviewOri(int ori)
{
    previewOri = ori;
}

void PixmapDisplay::setPreviewForward(bool forward)
{
    previewForward = forward;
}

void PixmapDisplay::setRoundCorder(int radius)
{
    roundCorner = radius;
}

void PixmapDisplay::setBackground(QColor color)
{
    background = std::move(color);
}

void PixmapDisplay::hideLoading()
{
    loadingHidden = true;
}

void PixmapDisplay::startAnimation(QRect targetRect, std::function<void()> onFinished,
                                   int durationMs)
{
    // Stops a running animation without finished(). Also safe in the callback of that animation.
    delete animation;

    auto *started = new QVariantAnimation(this);
    animation = started;
    started->setStartValue(drawRect);
    started->setEndValue(targetRect);
    started->setDuration(durationMs);
    started->setEasingCurve(QEasingCurve::InOutQuad);
    connect(started, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        animRect = value.toRect();
        update();
    });
    connect(started, &QVariantAnimation::finished, this,
            [this, own = animation, onFinished = std::move(onFinished)] {
                const QPointer<PixmapDisplay> self(this);
                if (onFinished) {
                    onFinished();
                }
                // The callback may have deleted the widget or started the next animation.
                if (!self || animation != own) {
                    return;
                }
                animRect = QRect();
                animation.clear();
                update();
            });
    // With a duration of 0 the animation finishes here, and its callback may delete this widget.
    started->start(QAbstractAnimation::DeleteWhenStopped);
}

void PixmapDisplay::updateDrawRect()
{
    const int w = width();
    const int h = height();
    if (w == 0 || h == 0)
        return;
    if (pixmap)
        pixSize = pixmap->size();

    const int pw = pixSize.width();
    const int ph = pixSize.height();
    QSize shown(w, h);
    if (pw > 0 && ph > 0) {
        if (!previewForward) {
            shown = ratio(w, h) > ratio(ph, pw) ? QSize(h, scaled(h, ph, pw))
                                                : QSize(scaled(w, pw, ph), w);
        } else if (scaleType == ScaleFit || scaleType == ScaleFill) {
            const bool wider = ratio(w, h) > ratio(pw, ph);
            shown = wider == (scaleType == ScaleFit) ? QSize(scaled(h, pw, ph), h)
                                                     : QSize(w, scaled(w, ph, pw));
        }
    }
    drawRect = QRect(QPoint((w - shown.width()) / 2, (h - shown.height()) / 2), shown);
}

void PixmapDisplay::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    updateDrawRect();
}

void PixmapDisplay::mousePressEvent(QMouseEvent *event)
{
    if (isClick(*event, lastPressTime)) {
        const QPointer<PixmapDisplay> self(this);
        Q_EMIT onClick();
        if (!self)
            return;
    }
    QWidget::mousePressEvent(event);
}

void PixmapDisplay::paintPicture(QPainter &painter, const QPixmap &picture) const
{
    const int angle = previewOri == 1 ? 270 : previewOri == 2 ? 180 : previewOri == 3 ? 90 : 0;
    const QPoint centre(width() / 2, height() / 2);
    painter.translate(centre);
    painter.rotate(angle);
    painter.translate(-centre);
    if (roundCorner > 0) {
        QPainterPath corners;
        corners.addRoundedRect(rect(), roundCorner, roundCorner);
        painter.setClipPath(corners);
    }
    drawInto(painter, drawRect, picture);
}

void PixmapDisplay::paintEvent(QPaintEvent * /*event*/)
{
    // Paint a copy without the lock: a style or a paint device may call setPixmap(), and a worker
    // need not wait for a slow paint.
    const bool animating = animRect.isValid();
    QPixmap picture;
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex);
        if (pixmap)
            picture = *pixmap;
        if (!animating && !picture.isNull() && picture.size() != pixSize)
            updateDrawRect();
    }

    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (animating) {
        if (!picture.isNull())
            drawInto(painter, animRect, picture);
        return;
    }

    painter.setPen(Qt::NoPen);
    painter.setBrush(background);
    painter.drawRect(rect());
    if (!picture.isNull()) {
        paintPicture(painter, picture);
    } else if (loadingHidden) {
        painter.fillRect(rect(), QColor(0, 0, 0, 1));
    } else {
        painter.setPen(Qt::gray);
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("Loading"));
    }

    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}
