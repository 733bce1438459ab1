#include "switchbutton.h"

#include <QAccessible>
#include <QPainter>
#include <QPropertyAnimation>
#include <QResizeEvent>

Slider::Slider(QWidget *parent)
    : QWidget(parent)
{
}

void Slider::setSize(int diameter)
{
    size = diameter;
}

int Slider::width() const
{
    return size;
}

void Slider::SetSliderColor(const QColor &color)
{
    sliderColor = color;
    update();
}

void Slider::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(sliderColor);
    painter.setPen(Qt::NoPen);
    const int radius = size / 2;
    painter.drawRoundedRect(QRect(0, 0, size, size), radius, radius);
}

SwitchButton::SwitchButton(QWidget *parent)
    : QWidget(parent)
    , diameter(qMin(width(), height()))
    , travel(width() - diameter)
    , activeBrush(QColor(0xE6, 0x00, 0x33))
    , inactiveBrush(QColor(0x3A, 0x3F, 0x46))
    , slider(new Slider(this))
{
    const int side = height() - 2 * margin;
    slider->setGeometry(margin, margin, side, side);
    slider->show();
    setCursor(Qt::PointingHandCursor);
    connect(this, &SwitchButton::sendAnimate, this, &SwitchButton::animate, Qt::QueuedConnection);
}

void SwitchButton::SetStatus(bool on, bool forceSignal)
{
    if (on != status && idle) {
        change(on);
        Q_EMIT sendAnimate();
        return;
    }
    const bool report = forceSignal && !blockNext;
    blockNext = false;
    if (report)
        Q_EMIT onValueChanged(status ? 1 : 0);
}

bool SwitchButton::GetStatus() const
{
    return status;
}

bool SwitchButton::isSliding() const
{
    return !idle;
}

void SwitchButton::blockNextSignal()
{
    blockNext = true;
}

void SwitchButton::SetActiveColor(const QColor &color)
{
    activeBrush = QBrush(color);
}

void SwitchButton::SetInactiveColor(const QColor &color)
{
    inactiveBrush = QBrush(color);
}

void SwitchButton::SetSliderColor(const QColor &color)
{
    slider->SetSliderColor(color);
}

void SwitchButton::SetSize(int w, int h)
{
    relayout(QSize(w, h));
}

void SwitchButton::setGeometry(const QRect &rect)
{
    QWidget::setGeometry(rect);
    relayout(rect.size());
}

void SwitchButton::setFixedSize(const QSize &fixed)
{
    QWidget::setFixedSize(fixed);
    relayout(fixed);
}

void SwitchButton::resize(const QSize &newSize)
{
    QWidget::resize(newSize);
    relayout(newSize);
}

void SwitchButton::animate()
{
    if (status)
        ToActive();
    else
        ToInactive();
}

void SwitchButton::mousePressEvent(QMouseEvent *event)
{
    if (!idle)
        return;
    change(!status);
    animate();
    QWidget::mousePressEvent(event);
}

void SwitchButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (!isEnabled())
        painter.setBrush(QColor(0x66, 0x66, 0x66));
    else
        painter.setBrush(status ? activeBrush : inactiveBrush);

    // Build the path once, not for every frame.
    if (track.isEmpty()) {
        QPainterPath leftCap;
        leftCap.addEllipse(QRectF(0, 0, diameter, diameter));
        QPainterPath middle;
        // NOLINTNEXTLINE(bugprone-integer-division)
        middle.addRect(QRectF(diameter / 2, 0, travel, diameter));
        QPainterPath rightCap;
        rightCap.addEllipse(QRectF(travel, 0, diameter, diameter));
        track = leftCap + middle + rightCap;
    }
    painter.drawPath(track);
}

void SwitchButton::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // Unlike relayout(), do not suppress a report: the switch may be sliding after a press or a
    // reset while the first show or a style sheet resizes it.
    if (event->size() != laidOut) {
        place(event->size());
        Q_EMIT sendAnimate();
    }
}

void SwitchButton::place(const QSize &area)
{
    diameter = qMin(area.width(), area.height());
    const int side = diameter - 2 * margin;
    const int x = status ? area.width() - area.height() + margin : margin;
    slider->setGeometry(x, margin, side, side);
    slider->setSize(side);
    travel = area.width() - diameter;
    track = QPainterPath();
    laidOut = area;
}

void SwitchButton::relayout(const QSize &area)
{
    place(area);
    blockNext = true;
    Q_EMIT sendAnimate();
}

void SwitchButton::change(bool on)
{
    idle = false;
    status = on;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void SwitchButton::ToActive()
{
    slide(margin, margin, width() - slider->width() - margin);
}

void SwitchButton::ToInactive()
{
    slide(slider->x(), slider->y(), margin);
}

void SwitchButton::slide(int fromX, int fromY, int toX)
{
    const int side = slider->width();
    auto *const animation = new QPropertyAnimation(slider, "geometry");
    animation->setDuration(duration);
    animation->setStartValue(QRect(fromX, fromY, side, side));
    animation->setEndValue(QRect(toX, margin, side, side));
    connect(animation, &QPropertyAnimation::finished, this, &SwitchButton::finishSlide);
    connect(animation, &QPropertyAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void SwitchButton::finishSlide()
{
    // If the switch is idle, a new size started this slide. Do not rely on blockNext for
    // that: a SetStatus() may have cleared it since relayout().
    const bool report = !idle && !blockNext;
    idle = true;
    blockNext = false;
    // Emit last: the receiver may change, block or delete the switch.
    if (report)
        Q_EMIT onValueChanged(status ? 1 : 0);
}
