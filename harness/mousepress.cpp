#include "mousepress.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

void pressMouse(QWidget &widget, const QPoint &place)
{
    const QPoint inWindow = widget.mapTo(widget.window(), place);
    const QPoint onScreen = widget.mapToGlobal(place);
    const QPointer<QWidget> alive(&widget);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held =
            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, place, inWindow, onScreen, Qt::LeftButton, held, Qt::NoModifier);
        if (alive)
            QCoreApplication::sendEvent(&widget, &event);
    }
}
