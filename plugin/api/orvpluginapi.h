#pragma once

#include "devicerecords.h"
#include "windowthaw.h"

#include <QJsonObject>
#include <QLayout>
#include <QWidget>
#include <QtPlugin>

#include <functional>

/// \file
/// All that a host includes.

/// Request kinds: the first argument of OrvPluginApi::commandChannel.
namespace ChannelRequest {
/// The number that goes over the channel.
enum Kind : int {
    Setting = 0,   ///< record SettingData; answer: the setting's value, invalid if there is none
    Camera = 3,    ///< record CameraData; the answer is ignored
    Extension = 4, ///< record ExtensionUnit; a get is answered with an ExtensionUnit
};
} // namespace ChannelRequest

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
/// an empty channel: that throws std::bad_function_call, which nobody catches.
///
/// Slot order and signatures are the contract between binaries: the interface identifier names
/// this exact table.
class OrvPluginApi
{
public:
    /// The plug-in's short name, also the stem of its catalogs' names; empty by default. May be
    /// called at any time, also before `insertWidget`.
    virtual QString name() { return QLatin1String(""); }

    /// The group of panels that the host shows this one in; 2 by default. May be called at any
    /// time. What a number means is the host's affair.
    virtual int category() { return 2; }

    /// Puts the controls, and through them the device, back to the factory defaults; does nothing
    /// by default. The host calls it only after `insertWidget`. Commands go out for what changes,
    /// some of them only when a control's animation has ended.
    virtual void resetToDefault() {}

    /// Builds the panel and puts it into `container`, which becomes its owner: first in a box
    /// layout, as one more item in any other layout; a container without a layout gets a vertical
    /// one without margins. Does nothing by default. The host calls it once, with the channel
    /// installed; the panel asks for the setting "language" and reads the device within the call.
    virtual void insertWidget(QWidget *container) { Q_UNUSED(container) }

    /// A value that the host has changed. Does nothing by default; a plug-in need not heed it.
    // By value, as the table between binaries has it.
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    virtual void syncPropValue(QString property, long value)
    {
        Q_UNUSED(property)
        Q_UNUSED(value)
    }

    /// What the host may store for the plug-in; empty by default.
    virtual QJsonObject getCurrentParams() { return {}; }

    /// What the host has stored for the plug-in. Does nothing by default.
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    virtual void setCurrentParams(QJsonObject params) { Q_UNUSED(params) }

    /// For a panel's own use: shows or hides `target` without flicker. The window of `section` is
    /// frozen, the layout of `section` invalidated, and on the next turn of the event loop the
    /// window is laid out, thawed and painted.
    void updateSpliter(QWidget *section, QWidget *target, bool show)
    {
        QWidget *const window = section->window();
        window->setUpdatesEnabled(false);
        target->setVisible(show);
        if (QLayout *const layout = section->layout())
            layout->invalidate();
        WindowThaw::thawLater(window);
    }

    /// The plug-in's way to the host, installed by the host: takes a request kind (ChannelRequest)
    /// and its record wrapped in a QVariant, returns the answer. The plug-in calls it on the GUI
    /// thread and waits there for each answer: what a call takes, the window stands still.
    std::function<QVariant(int request, QVariant record)> commandChannel;
};

Q_DECLARE_INTERFACE(OrvPluginApi, "com.talsen.OrvPluginApi")

static_assert(sizeof(OrvPluginApi) == sizeof(void *) + sizeof(std::function<void()>),
              "OrvPluginApi has drifted: a virtual table and the command channel, nothing else");
