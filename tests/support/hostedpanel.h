#pragma once

#include "controltrackingplugin.h"
#include "mousepress.h"
#include "panelwindow.h"
#include "recordinghost.h"
#include "ui_root.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>

/// Test access to private members.
struct PanelInternals
{
    static Ui_root &ui(ControlTrackingPlugin &panel) { return *panel.ui; }
    static void poll(ControlTrackingPlugin &panel) { panel.pollTrackingStatus(); }
    static QSharedPointer<M24_Extension> &areaTable(ControlTrackingPlugin &panel)
    {
        return panel.areaTable;
    }
};

/// A panel and its host.
struct HostedPanel : PanelWindow
{
    HostedPanel() { host.installIn(*panel); }

    // A panel that was never inserted has no other owner.
    ~HostedPanel() { delete panel; }

    void insertAndShow()
    {
        panel->insertWidget(container);
        window.show();
    }

    Ui_root &ui() { return PanelInternals::ui(*panel); }

    static void press(QWidget &widget) { pressMouse(widget, widget.rect().center()); }

    /// Presses a visible control, with the space bar if its name follows "key ".
    bool press(const QString &name)
    {
        auto *const control = panel->findChild<QWidget *>(name.section(' ', -1));
        if (!control || !control->isVisible())
            return false;
        if (name.startsWith("key ")) {
            control->setFocus(Qt::TabFocusReason);
            QKeyEvent event(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
            QCoreApplication::sendEvent(control, &event);
        } else {
            press(*control);
        }
        return true;
    }

    /// What the panel shows: switch, composition, checked buttons, visible rows.
    QString shown()
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

    RecordingHost host;
    QPointer<ControlTrackingPlugin> panel = new ControlTrackingPlugin;
};
