#pragma once

#include "hostedpanel.h"

#include <QCoreApplication>
#include <QTimer>

/// A host's window, and what fills it.
struct BenchWindow : HostWindow
{
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
};
