#include "qpressframe.h"

#include "pressinterval.h"

#include <QPointer>

QPressFrame::QPressFrame(QWidget *parent)
    : QFrame(parent)
{
}

void QPressFrame::setCornerRadius(int radius)
{
    cornerRadius = radius;
}

void QPressFrame::setBackgroundGif(const QString & /*path*/, Qt::Alignment align)
{
    alignment = align;
}

void QPressFrame::setBackgroundVideo(const QString & /*path*/, Qt::Alignment align)
{
    alignment = align;
}

void QPressFrame::setBackgroundPix(const QString & /*path*/, Qt::Alignment align)
{
    alignment = align;
    update();
}

void QPressFrame::mousePressEvent(QMouseEvent *event)
{
    if (isClick(*event, lastPressTime)) {
        const QPointer<QPressFrame> alive(this);
        Q_EMIT clicked();
        if (!alive)
            return;
    }
    QWidget::mousePressEvent(event);
}

void QPressFrame::enterEvent(QEvent *event)
{
    QWidget::enterEvent(event);
    Q_EMIT hoverEvent(true);
}

void QPressFrame::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    Q_EMIT hoverEvent(false);
}

void QPressFrame::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event); // NOLINT(bugprone-parent-virtual-call): no frame shape
}
