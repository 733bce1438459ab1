#pragma once

#include "controltrackingplugin.h"
#include "recordinghost.h"
#include "ui_root.h"

#include <QPointer>
#include <QVBoxLayout>

/// The way to the panel's private parts.
struct PanelInternals
{
    static Ui_root &ui(ControlTrackingPlugin &panel) { return *panel.ui; }
    static QTimer &pollTimer(ControlTrackingPlugin &panel) { return *panel.pollTimer; }
    static void poll(ControlTrackingPlugin &panel) { panel.pollTrackingStatus(); }
    static QSharedPointer<M24_Extension> &areaTable(ControlTrackingPlugin &panel)
    {
        return panel.areaTable;
    }
};

/// A host's window with a container.
struct HostWindow
{
    HostWindow();

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

    static void press(QWidget &widget);
    static void pressKey(QWidget &widget); ///< the space bar, on the focused widget

    /// Presses a control if a user could; with "key " before its name, by the space bar.
    bool press(const QString &name);

    /// What the panel shows, in words: switch, composition, checked buttons, visible rows.
    QString shown();

    RecordingHost host;
    QPointer<ControlTrackingPlugin> panel = new ControlTrackingPlugin;
};
