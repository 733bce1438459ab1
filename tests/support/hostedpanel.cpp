#include "hostedpanel.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

HostWindow::HostWindow()
{
    (new QVBoxLayout(&window))->addWidget(container);
    new QVBoxLayout(container);
    window.resize(600, 900);
}

void HostedPanel::press(QWidget &widget)
{
    const QPointF place = widget.rect().center();
    const QPointer<QWidget> alive(&widget);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, place, Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
        if (alive)
            QCoreApplication::sendEvent(&widget, &event);
    }
}

void HostedPanel::pressKey(QWidget &widget)
{
    widget.setFocus(Qt::TabFocusReason);
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

bool HostedPanel::press(const QString &name)
{
    auto *const control = panel->findChild<QWidget *>(name.section(' ', -1));
    if (!control || !control->isVisible())
        return false;
    if (name.startsWith("key "))
        pressKey(*control);
    else
        press(*control);
    return true;
}

QString HostedPanel::shown()
{
    QStringList words{ui().sw_title->GetStatus() ? "on" : "off",
                      ui().sw_picture_mode->GetStatus() ? "composed" : "plain"};
    const auto buttons = panel->findChildren<QAbstractButton *>();
    for (const auto *button : buttons) {
        if (button->isChecked())
            words << button->objectName().section('_', 1, 1);
    }
    for (const QWidget *row :
         {ui().frame_spliter, ui().frame_picture_title, ui().frame_picture_mode,
          ui().frame_limit_title, ui().frame_limit_setting_spliter}) {
        if (!row->isHidden())
            words << '|' + row->objectName().section('_', 1);
    }
    return words.join(' ');
}
