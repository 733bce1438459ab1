#pragma once

#include "devicerecords.h"
#include "windowthaw.h"

#include <QJsonObject>
#include <QLayout>
#include <QWidget>
#include <QtPlugin>

#include <functional>

/// \file
/// The only header a host needs.

/// Kinds of requests: the first argument of OrvPluginApi::commandChannel.
namespace ChannelRequest {
/// The values are part of the binary interface.
enum Kind : int {
    Setting = 0,   ///< record SettingData; answer: the setting's value, or an invalid QVariant
    Camera = 3,    ///< record CameraData; the panel ignores the answer
    Extension = 4, ///< record ExtensionUnit; answer to a get: an ExtensionUnit
};
} // namespace ChannelRequest

/// The interface between a host application and a settings-panel plug-in.
///
/// A host loads the plug-in with QPluginLoader and casts its instance with
/// `qobject_cast<OrvPluginApi *>`. Then, on the GUI thread, it
///
///  1. assigns `commandChannel`,
///  2. calls `insertWidget` once, with the container for the panel,
///  3. calls `resetToDefault` when the user asks for the factory defaults,
///  4. deletes the instance as a QObject, never through this class. Deleting the container deletes
///     the panel, too.
///
/// The host must not delete the plug-in during a call of `commandChannel`. It must not leave the
/// channel empty: a call through it would throw std::bad_function_call, which no caller catches.
///
/// The order and signatures of the virtual functions are the binary interface. A different table
/// needs a different interface identifier.
class OrvPluginApi
{
public:
    /// The plug-in's short name, with which the file names of its catalogs begin. Default: empty.
    /// May be called at any time, even before `insertWidget`.
    virtual QString name() { return QLatin1String(""); }

    /// The group in which the host shows the panel. The host defines the groups. Default: 2. May be
    /// called at any time, even before `insertWidget`.
    virtual int category() { return 2; }

    /// Resets the controls, and through them the device, to the factory defaults. Controls that
    /// change send their commands, some only after their animation. Call only after `insertWidget`.
    /// Default: does nothing.
    virtual void resetToDefault() {}

    /// Builds the panel and puts it into `container`, which becomes its owner: first in a box
    /// layout, last in any other. A container without a layout gets a vertical one without margins.
    /// During the call, the panel asks for the setting "language" and reads the device. Call once,
    /// after assigning `commandChannel`. Default: does nothing.
    virtual void insertWidget(QWidget *container) { Q_UNUSED(container) }

    /// Tells the plug-in that the host changed a value. A plug-in may ignore it. Default: does
    /// nothing.
    // By value: the binary interface requires it.
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    virtual void syncPropValue(QString property, long value)
    {
        Q_UNUSED(property)
        Q_UNUSED(value)
    }

    /// Parameters for the host to store. Default: empty.
    virtual QJsonObject getCurrentParams() { return {}; }

    /// Restores parameters that the host stored. Default: does nothing.
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    virtual void setCurrentParams(QJsonObject params) { Q_UNUSED(params) }

    /// For panels: shows or hides `target` without flicker. Freezes the window of `section` and
    /// invalidates the layout of `section`. On the next turn of the event loop, the window is laid
    /// out, thawed and painted.
    void updateSpliter(QWidget *section, QWidget *target, bool show)
    {
        QWidget *const window = section->window();
        window->setUpdatesEnabled(false);
        target->setVisible(show);
        if (QLayout *const layout = section->layout())
            layout->invalidate();
        WindowThaw::thawLater(window);
    }

    /// Assigned by the host. Takes a request's kind (ChannelRequest) and its record, wrapped in a
    /// QVariant, and returns the answer. The plug-in calls it on the GUI thread: the window is
    /// blocked until the host answers.
    std::function<QVariant(int request, QVariant record)> commandChannel;
};

Q_DECLARE_INTERFACE(OrvPluginApi, "com.talsen.OrvPluginApi")

static_assert(sizeof(OrvPluginApi) == sizeof(void *) + sizeof(std::function<void()>),
              "OrvPluginApi has drifted: a virtual table and the command channel, nothing else");
