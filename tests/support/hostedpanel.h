#pragma once

#include "controltrackingplugin.h"
#include "recordinghost.h"
#include "ui_root.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QVBoxLayout>

/// The way to the panel's private parts.
struct PanelInternals
{
    static Ui_root &ui(ControlTrackingPlugin &panel) { return *panel.ui; }
    static void poll(ControlTrackingPlugin &panel) { panel.pollTrackingStatus(); }
    static QSharedPointer<M24_Extension> &areaTable(ControlTrackingPlugin &panel)
    {
        return panel.areaTable;
    }
};

/// A host's window with a container.
struct HostWindow
{
    HostWindow()
    {
        (new QVBoxLayout(&window))->addWidget(container);
        new QVBoxLayout(container);
        window.resize(600, 900);
    }

    QWidget window;
    QWidget *container = new QWidget;
};

/// A host, and a panel to be put into its window.
struct HostedPanel : HostWindow
{
    HostedPanel() { host.installIn(*panel); }

    // A panel that was never inserted has no owner but this.
    ~HostedPanel() { delete panel; }

    void insertAndShow()
    {
        panel->insertWidget(container);
        window.show();
    }

    Ui_root &ui() { return PanelInternals::ui(*panel); }

    static void press(QWidget &widget)
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

    /// Presses a control if a user could; with "key " before its name, by the space bar.
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

    /// What the panel shows, in words: switch, composition, checked buttons, visible rows.
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
