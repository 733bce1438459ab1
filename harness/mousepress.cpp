#include "mousepress.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

void pressMouse(QWidget &widget, const QPoint &place)
{
    const QPoint onScreen = widget.mapToGlobal(place);
    const QPointer<QWidget> alive(&widget);
    QMouseEvent press(QEvent::MouseButtonPress, place, onScreen, Qt::LeftButton, Qt::LeftButton,
                      {});
    QMouseEvent release(QEvent::MouseButtonRelease, place, onScreen, Qt::LeftButton, {}, {});
    QCoreApplication::sendEvent(&widget, &press);
    if (alive)
        QCoreApplication::sendEvent(&widget, &release);
}
