#include "focusframe.h"

#include "qpressframe.h"

#include <QApplication>
#include <QCommonStyle>
#include <QPainter>
#include <QPainterPath>

namespace {

/// Draws a light line inside a dark one, so that one of them stands out from any background.
class FrameStyle : public QCommonStyle
{
    Q_OBJECT

public:
    using QCommonStyle::QCommonStyle;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override
    {
        // Above all other widgets, so that the parent does not clip the frame.
        return hint == SH_FocusFrame_AboveWidget
                   ? 1
                   : QCommonStyle::styleHint(hint, option, widget, returned);
    }

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override
    {
        if (metric != PM_FocusFrameHMargin && metric != PM_FocusFrameVMargin)
            return QCommonStyle::pixelMetric(metric, option, widget);
        // A press frame may fill its window, which would clip a frame around it.
        const auto *const frame = qobject_cast<const QFocusFrame *>(widget);
        const bool outside = frame && !qobject_cast<const QPressFrame *>(frame->widget());
        return outside ? 2 * lineWidth(*widget) : 0;
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        if (element != CE_FocusFrame || !widget) {
            QCommonStyle::drawControl(element, option, painter, widget);
            return;
        }
        const int line = lineWidth(*widget);
        QRect rect = widget->rect();
        for (const Qt::GlobalColor color : {Qt::black, Qt::white}) {
            QPainterPath path;
            path.addRect(rect);
            rect.adjust(line, line, -line, -line);
            path.addRect(rect); // a hole
            painter->fillPath(path, color);
        }
    }

private:
    static int lineWidth(const QWidget &widget) { return qMax(1, widget.logicalDpiX() / 96); }
};

} // namespace

FocusFrame::FocusFrame(QWidget &area)
    : m_area(area)
{
    auto *const style = new FrameStyle;
    style->setParent(this);
    setStyle(style);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget * /*old*/, QWidget *focused) { follow(focused); });
    // The frame is a child of the window, which may outlive the area.
    connect(&area, &QObject::destroyed, this, [this] { delete this; });
}

void FocusFrame::follow(QWidget *focused)
{
    const bool byKey = focused && m_area.isAncestorOf(focused) &&
                       focused->window()->testAttribute(Qt::WA_KeyboardFocusChange);
    setWidget(byKey ? focused : nullptr);
}

#include "focusframe.moc"
