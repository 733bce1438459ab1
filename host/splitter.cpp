#include "splitter.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace {

class Handle : public QSplitterHandle
{
public:
    Handle(Qt::Orientation orientation, QSplitter *splitter)
        : QSplitterHandle(orientation, splitter)
    {
        setFocusPolicy(Qt::TabFocus);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const bool acrossX = orientation() == Qt::Horizontal;
        const bool back = event->key() == (acrossX ? Qt::Key_Left : Qt::Key_Up);
        if (!back && event->key() != (acrossX ? Qt::Key_Right : Qt::Key_Down)) {
            QSplitterHandle::keyPressEvent(event);
            return;
        }
        const auto place = [this, acrossX] {
            return acrossX ? x() : y();
        };
        const int start = place();
        const int end = acrossX ? splitter()->width() : splitter()->height();
        const int step = fontMetrics().height();
        // A part that is at its smallest, or hidden, moves only by its whole smallest size.
        for (int distance = step; place() == start && distance < end; distance += step)
            moveSplitter(back ? start - distance : start + distance);
    }

    void paintEvent(QPaintEvent * /*event*/) override
    {
        // With the focus, the grip is a bright line along the whole handle.
        const bool acrossX = orientation() == Qt::Horizontal;
        const int along = acrossX ? height() : width();
        const int length = hasFocus() ? along : std::min(along, fontMetrics().height() * 2);
        QRect grip(0, 0, acrossX ? width() / 3 : length, acrossX ? length : height() / 3);
        grip.moveCenter(rect().center());
        QPainter(this).fillRect(grip,
                                palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
    }
};

} // namespace

QSplitterHandle *Splitter::createHandle()
{
    return new Handle(orientation(), this);
}
