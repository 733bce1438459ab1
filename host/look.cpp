#include "look.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>
#include <QToolTip>

namespace {

/// Fusion with room around the text of buttons on every screen, with a frame around the list that
/// has the focus, and with splitters that are easy to see.
class RoomyFusion : public QProxyStyle
{
public:
    RoomyFusion()
        : QProxyStyle("fusion")
    {
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (element == PE_Frame && option->state & State_HasFocus &&
            qobject_cast<const QAbstractItemView *>(widget)) {
            painter->setPen(QApplication::palette().color(QPalette::Highlight));
            painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        }
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        if (element != CE_Splitter) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QRect grip = QRect({}, option->rect.size() / 3).intersected({0, 0, 60, 60});
        grip.moveCenter(option->rect.center());
        painter->fillRect(grip, option->palette.color(QPalette::Mid));
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override
    {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        const int line = option ? option->fontMetrics.height() : 0;
        return type == CT_PushButton ? size.expandedTo(contents + QSize(2 * line, line / 2)) : size;
    }
};

} // namespace

QFont Look::font(int points)
{
    QFont font = QApplication::font();
    font.setPointSize(points);
    return font;
}

void Look::applyDark()
{
    constexpr int headingPoints = 12;
    const QColor text(0xE6E8EC);
    const QColor dim(0x6B7079);
    QPalette dark(QColor(0x282B30), QColor(0x1B1D21));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::HighlightedText}) {
        dark.setColor(role, text);
        dark.setColor(QPalette::Disabled, role, dim);
    }
    dark.setColor(QPalette::Base, QColor(0x25282D));
    dark.setColor(QPalette::AlternateBase, QColor(0x202327));
    dark.setColor(QPalette::ToolTipBase, QColor(0x282B30));
    dark.setColor(QPalette::Mid, QColor(0x80868F)); // the grips of splitters
    // Also the color of a control that has the focus. Lists use a darker one behind their text.
    dark.setColor(QPalette::Highlight, QColor(0x6CA8F0));
    dark.setColor(QPalette::HighlightedText, dark.color(QPalette::Base));
    QApplication::setStyle(new RoomyFusion);
    QApplication::setPalette(dark);
    dark.setColor(QPalette::Highlight, QColor(0x3A3F46));
    dark.setColor(QPalette::HighlightedText, text);
    QApplication::setPalette(dark, "QAbstractItemView");
    // The panel's title takes its font size from the application.
    QApplication::setFont(font(headingPoints));
    for (const char *const kind : {"QDialog", "QMenu"})
        QApplication::setFont(font(), kind);
    QToolTip::setFont(font());
}
