#include "pixmapdisplay.h"

#include <QDateTime>
#include <QImage>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QStyleOption>
#include <QVariantAnimation>

#include <tuple>
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

void prepare(QPainter &painter)
{
    painter.setPen(Qt::NoPen);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

void drawInto(QPainter &painter, const QRect &place, const QPixmap &picture)
{
    painter.drawPixmap(QRectF(place), picture, QRectF(picture.rect()));
}

} // namespace

bool PixmapDisplay::Look::operator==(const Look &other) const
{
    const auto fields = [](const Look &look) {
        return std::tie(look.picture, look.turn, look.scale, look.place, look.size);
    };
    return fields(*this) == fields(other);
}

PixmapDisplay::PixmapDisplay(QWidget *parent)
    : QWidget(parent)
{
    connect(this, SIGNAL(updatePic()), this, // clazy:exclude=old-style-connect
            SLOT(update()), Qt::QueuedConnection);
}

PixmapDisplay::~PixmapDisplay()
{
    {
        const std::lock_guard<std::recursive_mutex> lock(mutex);
        pixmap.reset();
    }
    delete animation;
}

void PixmapDisplay::setPixmap(const QPixmap &pix)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    pixmap = std::make_unique<QPixmap>(pix);
    Q_EMIT updatePic(); // under the lock: the widget may be deleted as soon as that is free
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
    // Deleting a running animation stops it without finished(). A finished one may be in its
    // callback right now, which it survives.
    delete animation;

    auto *started = new QVariantAnimation;
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
    // An animation of no duration finishes in here, and its callback may delete this widget.
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
    if (event->button() == Qt::LeftButton) {
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        const bool due = now - lastClickTime >= clickInterval;
        lastClickTime = now;
        if (due) {
            const QPointer<PixmapDisplay> self(this);
            Q_EMIT onClick();
            if (!self)
                return;
        }
    }
    QWidget::mousePressEvent(event);
}

QTransform PixmapDisplay::turn() const
{
    const int angle = previewOri == 1 ? 270 : previewOri == 2 ? 180 : previewOri == 3 ? 90 : 0;
    const int x = width() / 2;
    const int y = height() / 2;
    return QTransform::fromTranslate(x, y).rotate(angle).translate(-x, -y);
}

void PixmapDisplay::paintPicture(QPainter &painter, const QPixmap &picture)
{
    const QTransform toDevice = painter.deviceTransform();
    const QTransform turned = turn();
    painter.setWorldTransform(turned);
    if (roundCorner > 0) {
        QPainterPath corners;
        corners.addRoundedRect(rect(), roundCorner, roundCorner);
        painter.setClipPath(corners);
    }

    // Painting a large picture scaled costs up to a hundred times a blit of what came out of it.
    // The blit shows the same only if the picture covers whole pixels of the target, and each of
    // them fully: rounded corners do not, and drawPixmap() leaves the edge that cuts off an upright
    // picture at 254 of 255. Turned by a quarter, one or two sizes in a hundred differ in some
    // pixels by one or two levels of 255; nobody sees that, so they are kept too.
    const auto *target = dynamic_cast<QImage *>(painter.paintEngine()->paintDevice());
    const qreal scale = toDevice.m11();
    const QRectF whole = turned.mapRect(QRectF(drawRect));
    const QRectF seen = whole & QRectF(rect());
    const QRectF pixels(seen.topLeft() * scale, seen.size() * scale);
    const QRectF onTarget = pixels.translated(toDevice.dx(), toDevice.dy());
    const bool keep = target &&
                      (target->format() == QImage::Format_RGB32 ||
                       target->format() == QImage::Format_ARGB32_Premultiplied) &&
                      toDevice.type() <= QTransform::TxScale && toDevice.m22() == scale &&
                      !pixels.isEmpty() && pixels == pixels.toRect() &&
                      onTarget == onTarget.toRect() && target->rect().contains(onTarget.toRect()) &&
                      roundCorner <= 0 && (turned.isRotating() || seen == whole);
    if (!keep) {
        kept = QPixmap();
        drawInto(painter, drawRect, picture);
        return;
    }

    const Look look{picture.cacheKey(), turned, scale, drawRect, size()};
    if (kept.isNull() || !(keptLook == look)) {
        keptLook = look;
        kept = QPixmap(pixels.size().toSize());
        kept.fill(Qt::transparent);
        QPainter keeper(&kept);
        prepare(keeper);
        keeper.translate(-pixels.topLeft());
        keeper.scale(scale, scale);
        keeper.setWorldTransform(turned, true);
        drawInto(keeper, drawRect, picture);
    }
    painter.setWorldTransform(QTransform::fromScale(1 / scale, 1 / scale));
    painter.drawPixmap(pixels.topLeft(), kept);
    painter.setWorldTransform(turned);
}

void PixmapDisplay::paintEvent(QPaintEvent *event)
{
    // Painted from a copy: a style or a paint device may call setPixmap().
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
    prepare(painter);
    if (animating) {
        if (!picture.isNull())
            drawInto(painter, animRect, picture);
        QWidget::paintEvent(event);
        return;
    }

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
    QWidget::paintEvent(event);
}
