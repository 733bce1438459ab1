#pragma once

#include "controltrackingplugin.h"
#include "mousepress.h"
#include "panelwindow.h"
#include "recordinghost.h"
#include "ui_root.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
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

/// A panel and its host. The panel is not inserted yet.
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

    /// Presses a control: "rb_hand" with the mouse, "Space:rb_hand" with that key. Returns false if
    /// it is not visible.
    bool press(const QString &step)
    {
        auto *const control = panel->findChild<QWidget *>(step.section(':', -1));
        if (!control || !control->isVisible())
            return false;
        if (step.contains(':')) {
            control->window()->setAttribute(Qt::WA_KeyboardFocusChange); // as Tab does
            control->setFocus(Qt::TabFocusReason);
            const auto keys = int(QKeySequence(step.section(':', 0, 0))[0]);
            QKeyEvent event(QEvent::KeyPress, int(keys & ~Qt::KeyboardModifierMask),
                            Qt::KeyboardModifiers(keys & Qt::KeyboardModifierMask));
            QCoreApplication::sendEvent(control, &event);
        } else {
            pressMouse(*control, control->rect().center());
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
