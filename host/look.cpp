#include "look.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>
#include <QToolTip>

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
    dark.setColor(QPalette::Highlight, QColor(0x3A3F46));
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setPalette(dark);
    // The panel's title takes its font size from the application.
    QApplication::setFont(font(headingPoints));
    QToolTip::setFont(font());
}
