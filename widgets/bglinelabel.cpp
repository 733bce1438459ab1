#include "bglinelabel.h"

#include <QPainter>

BgLineLabel::BgLineLabel(QWidget *parent)
    : QLabel(parent)
{
}

void BgLineLabel::setStyleSheet(const QString &styleSheet)
{
    constexpr int longestTail = 1000;
    constexpr int insideKey = 6; // the tail starts with the "on" of "location"

    const int key = styleSheet.indexOf(QLatin1String("location"));
    if (key < 0) {
        QWidget::setStyleSheet(styleSheet);
        return;
    }
    const QString tail = styleSheet.mid(key + insideKey, longestTail);
    // indexOf() returns -1 for a missing separator, so mid() and left() keep the whole text.
    const QString rest = tail.mid(tail.indexOf(QLatin1Char(';')) + 1);
    const QString value = tail.mid(tail.indexOf(QLatin1Char(':')) + 1);
    location = value.left(value.indexOf(QLatin1Char(';'))).trimmed().toInt();
    QWidget::setStyleSheet(styleSheet.left(key) + rest);
}

void BgLineLabel::paintEvent(QPaintEvent *event)
{
    {
        constexpr int stub = 5;
        constexpr int radius = 7;
        constexpr int square = 2 * radius;
        constexpr int quarter = 90 * 16; // QPainter counts in sixteenths of a degree

        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPen pen(QColor(0x52, 0x57, 0x60), 1.0, Qt::CustomDashLine, Qt::SquareCap, Qt::BevelJoin);
        pen.setDashPattern({5, 2});
        painter.setPen(pen);

        const int w = width();
        const int h = height();
        const int cx = w / 2;
        const int cy = h / 2;
        switch (location) {
        case 0:
            painter.drawLine(cx + radius, cy, w, cy);
            painter.drawArc(cx, cy, square, square, quarter, quarter);
            painter.drawLine(cx, cy + radius, cx, h);
            break;
        case 1:
        case 6:
            painter.drawLine(0, cy, stub, cy);
            painter.drawLine(w - stub, cy, w, cy);
            break;
        case 2:
            painter.drawLine(0, cy, cx - radius, cy);
            painter.drawArc(cx - square, cy, square, square, 0, quarter);
            painter.drawLine(cx, cy + radius, cx, h);
            break;
        case 3:
        case 4:
            painter.drawLine(cx, 0, cx, stub);
            painter.drawLine(cx, h - stub, cx, h);
            break;
        case 5:
            painter.drawLine(cx + radius, cy, w, cy);
            painter.drawArc(cx, cy - square, square, square, 2 * quarter, quarter);
            painter.drawLine(cx, 0, cx, cy - radius);
            break;
        case 7:
            painter.drawLine(0, cy, cx - radius, cy);
            painter.drawArc(cx - square, cy - square, square, square, 0, -quarter);
            painter.drawLine(cx, 0, cx, cy - radius);
            break;
        default:
            break;
        }
    }
    QLabel::paintEvent(event);
}
