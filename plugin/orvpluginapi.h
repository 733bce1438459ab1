#pragma once

#include "devicerecords.h"

#include <QApplication>
#include <QJsonObject>
#include <QLayout>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QtPlugin>

#include <functional>

/// Request kinds: the first argument of OrvPluginApi::commandChannel.
namespace ChannelRequest {
enum Kind : int {
    Setting = 0,   ///< record SettingData; answer: the setting's value
    Camera = 3,    ///< record CameraData; the answer is ignored
    Extension = 4, ///< record ExtensionUnit; a get is answered with an ExtensionUnit
};
}

/// What a host application and a settings-panel plug-in share.
///
/// A host loads the plug-in with QPluginLoader, casts its instance with
/// `qobject_cast<OrvPluginApi *>`, and then, on the GUI thread:
///
///  1. assigns `commandChannel`;
///  2. calls `insertWidget` once, with the container that is to hold the panel;
///  3. may call `resetToDefault` whenever the user asks for the factory defaults;
///  4. destroys the instance as a QObject, never through this class. The panel also goes with the
///     container, being its child.
///
/// A host must not delete the plug-in inside a call of `commandChannel`, nor let it call through
/// an empty channel: that throws std::bad_function_call, which nobody catches. The plug-in sends
/// its requests on the GUI thread and waits for each answer.
///
/// Slot order and signatures are the contract between binaries: the interface identifier names
/// this exact table.
class OrvPluginApi
{
public:
    /// The plug-in's short name; empty by default.
    virtual QString name() { return QLatin1String(""); }

    /// The group of panels that the host shows this one in; 2 by default.
    virtual int category() { return 2; }

    /// Puts the controls, and through them the device, back to the factory defaults.
    virtual void resetToDefault() {}

    /// Builds the panel and puts it into `container`, which becomes its owner: first in a box
    /// layout, as one more item in any other layout; a container without a layout gets a vertical
    /// one.
    virtual void insertWidget(QWidget *container) { Q_UNUSED(container) }

    // By value, as the table between binaries has it.
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    virtual void syncPropValue(QString property, long value)
    {
        Q_UNUSED(property)
        Q_UNUSED(value)
    }

    virtual QJsonObject getCurrentParams() { return {}; }

    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    virtual void setCurrentParams(QJsonObject params) { Q_UNUSED(params) }

    /// Shows or hides `target` without flicker: the window of `section` is frozen, the layout of
    /// `section` invalidated, and on the next turn of the event loop the window is laid out,
    /// thawed and painted.
    void updateSpliter(QWidget *section, QWidget *target, bool show)
    {
        QWidget *const window = section->window();
        window->setUpdatesEnabled(false);
        target->setVisible(show);
        if (QLayout *const layout = section->layout())
            layout->invalidate();
        thawLater(window);
    }

    /// The plug-in's way to the host, installed by the host: takes a request kind (ChannelRequest)
    /// and its record wrapped in a QVariant, returns the answer.
    std::function<QVariant(int request, QVariant record)> commandChannel;

protected:
    /// Lays out, thaws and paints a frozen window on the next turn of the event loop, once for all
    /// that ask until then, even if the panel that asked is gone by then.
    static void thawLater(QWidget *window)
    {
        static constexpr char pending[] = "orv_thawPending";
        if (window->property(pending).toBool())
            return;
        window->setProperty(pending, true);
        QTimer::singleShot(0, qApp, [window = QPointer<QWidget>(window)] {
            if (window) {
                // First: what the events below freeze again gets a step of its own.
                window->setProperty(pending, QVariant());
                if (QLayout *const layout = window->layout())
                    layout->activate();
                // An event may open an event loop of its own, such as a dialog's.
                QTimer dialogOpened;
                QObject::connect(&dialogOpened, &QTimer::timeout, window.data(),
                                 [window] { window->setUpdatesEnabled(true); });
                dialogOpened.setSingleShot(true);
                dialogOpened.start(50);
                // By name as well: GLib's dispatcher, asked in here, passes over what was posted
                // before this step, and rows that came into sight would be painted once more after
                // the thaw.
                QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
                QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            }
            if (window) {
                window->setUpdatesEnabled(true);
                window->repaint();
            }
            // What was taken out of a frozen window is still frozen, but not by itself: nobody else
            // would ever thaw it.
            const QWidgetList windows = QApplication::topLevelWidgets();
            for (QWidget *const other : windows) {
                if (!other->updatesEnabled() && !other->testAttribute(Qt::WA_ForceUpdatesDisabled))
                    other->setUpdatesEnabled(true);
            }
        });
    }
};

Q_DECLARE_INTERFACE(OrvPluginApi, "com.talsen.OrvPluginApi")

static_assert(sizeof(OrvPluginApi) == sizeof(void *) + sizeof(std::function<void()>),
              "OrvPluginApi has drifted: a virtual table and the command channel, nothing else");
