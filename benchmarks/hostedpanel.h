#pragma once

#include "controltrackingplugin.h"
#include "ui_root.h"

#include <QCoreApplication>
#include <QVBoxLayout>

struct PanelInternals
{
    static Ui_root *ui(ControlTrackingPlugin &panel) { return panel.ui; }
    static void poll(ControlTrackingPlugin &panel) { panel.pollTrackingStatus(); }
};

/// A host's window with a container, and what fills it.
struct HostWindow
{
    HostWindow()
    {
        (new QVBoxLayout(&window))->addWidget(container);
        new QVBoxLayout(container);
        window.resize(400, 600);
    }

    /// Puts in a panel with a camera that tracks, with composition.
    ControlTrackingPlugin *insertPanel()
    {
        auto *const panel = new ControlTrackingPlugin;
        panel->commandChannel = [](int request, const QVariant & /*record*/) -> QVariant {
            if (request != ChannelRequest::Extension)
                return 1;
            ExtensionUnit reply;
            reply.length = 60;
            reply.data[1] = 1;
            reply.data[3] = 1;
            reply.data[4] = 1;
            return QVariant::fromValue(reply);
        };
        panel->insertWidget(container);
        return panel;
    }

    /// Puts in the same form, with the same rows in sight, without anything behind it.
    QWidget *insertForm(Ui_root &form)
    {
        auto *const widget = new QWidget;
        form.setupUi(widget);
        form.frame_limit_title->hide();
        form.frame_limit_setting_spliter->hide();
        container->layout()->addWidget(widget);
        return widget;
    }

    /// What a relayout without flicker takes: one freeze, one deferred step.
    void freezeAndThaw()
    {
        window.setUpdatesEnabled(false);
        container->layout()->invalidate();
        QTimer::singleShot(0, &window, [this] {
            window.layout()->activate();
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            window.setUpdatesEnabled(true);
            window.repaint();
        });
    }

    /// Runs the event loop until it has nothing left to do, timers of real time aside.
    static void turn()
    {
        for (int i = 0; i < 4; ++i)
            QCoreApplication::processEvents();
    }

    QWidget window;
    QWidget *container = new QWidget;
};
