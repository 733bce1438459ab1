#include "objectscaling.h"

#include <QPushButton>
#include <QToolButton>
#include <QWidget>

#include <cmath>

namespace {

int nearest(int length, double factor)
{
    return static_cast<int>(std::lround(length * factor));
}

int truncated(int length, double factor)
{
    return static_cast<int>(length * factor);
}

void scaleLimits(QWidget &widget, double factor)
{
    if (widget.minimumWidth() != 0)
        widget.setMinimumWidth(nearest(widget.minimumWidth(), factor));
    if (widget.minimumHeight() != 0)
        widget.setMinimumHeight(nearest(widget.minimumHeight(), factor));
    if (widget.maximumWidth() < QWIDGETSIZE_MAX)
        widget.setMaximumWidth(nearest(widget.maximumWidth(), factor));
    if (widget.maximumHeight() < QWIDGETSIZE_MAX)
        widget.setMaximumHeight(nearest(widget.maximumHeight(), factor));
}

// Compares names because subclasses must keep their icon sizes.
void scaleIcon(QWidget &widget, double factor)
{
    const QLatin1String name(widget.metaObject()->className());
    QAbstractButton *button = nullptr;
    if (name == QLatin1String("QToolButton") || name == QLatin1String("LoadingButton"))
        button = qobject_cast<QToolButton *>(&widget);
    else if (name == QLatin1String("QPushButton"))
        button = qobject_cast<QPushButton *>(&widget);
    if (button)
        button->setIconSize(button->iconSize() * factor);
}

} // namespace

void Talsen::updateObjectSize(QObject &object, double factor, int resizeSelf)
{
    changeObjectSizeInner(object, factor);
    auto *const widget = qobject_cast<QWidget *>(&object);
    if (resizeSelf == 0 || !widget)
        return;
    widget->setGeometry(truncated(widget->x(), factor), truncated(widget->y(), factor),
                        truncated(widget->width(), factor), truncated(widget->height(), factor));
    widget->setMinimumSize(widget->minimumSize() * factor);
    widget->setMaximumSize(widget->maximumSize() * factor);
}

void Talsen::changeObjectSizeInner(const QObject &object, double factor)
{
    // Iterate by index: resizing a widget may change the list of children.
    for (int i = 0; i < object.children().size(); ++i) {
        auto *const child = qobject_cast<QWidget *>(object.children().at(i));
        if (!child)
            continue;
        scaleLimits(*child, factor);
        child->setGeometry(nearest(child->x(), factor), nearest(child->y(), factor),
                           nearest(child->width(), factor), nearest(child->height(), factor));
        scaleIcon(*child, factor);
        if (const QObject *const same = object.children().value(i))
            changeObjectSizeInner(*same, factor);
    }
}
