#pragma once

#include "orvpluginapi.h"
#include "simulatedcamera.h"

#include <QPointer>
#include <QVector>
#include <QWidget>

#include <mutex>

struct Task;

/// One call of a panel's channel.
struct Request
{
    int kind;
    QVariant record;
    bool onGuiThread;

    /// Of an extension request; all zero in the others.
    ExtensionUnit unit() const { return record.value<ExtensionUnit>(); }
    QByteArray bytes() const;

    /// Whether it asks for something; all others tell the camera or the host something.
    bool asks() const;
    QString inWords() const;
};

/// The panel to be checked, in the window of a host, with a simulated camera behind its channel.
///
/// It is never destroyed, only its plug-in and its window are: a panel that is heard from later is
/// still answered.
class CheckedPanel
{
public:
    /// Loads the plug-in and installs the channel. A plug-in that cannot be loaded ends the check.
    static CheckedPanel &load(const Task &task);

    /// Loads, inserts, shows, and lives through a tenth of a second.
    static CheckedPanel &open(const Task &task);

    void insert() { api->insertWidget(container); }
    void destroyPanel() { delete instance.data(); }

    /// Destroys the window with all that is in it, and the plug-in, should that have outlived it.
    void destroyWindow();

    /// The widgets that a user could click now.
    QWidgetList controls() const;

    /// Uses `control` as a user may: by the mouse in its middle or at its beginning, where the box
    /// of a check box is, or by the space bar. A dialog or menu that opens is closed half a second
    /// later.
    enum Way { Middle, Beginning, SpaceBar, WayCount };
    void use(QWidget *control, Way way);

    /// One of the controls in one of the ways, if there are any.
    void useAny(const Task &task);

    /// Up to four of them, with up to a second between them.
    void useForAWhile(const Task &task);

    /// What was requested since the last call, with or without what only asks.
    QVector<Request> takeRequests(bool alsoAsking = true);

    QPointer<QWidget> window = new QWidget; ///< has room for any panel; not shown at first
    QPointer<QWidget> container = new QWidget(window);
    QPointer<QObject> instance;
    OrvPluginApi *api = nullptr; ///< the same
    SimulatedCamera camera;
    QVariant language = 1;
    std::function<QVariant(ExtensionUnit)> answer; ///< to a get, in place of the camera's, if set

private:
    QVariant request(int kind, const QVariant &record);

    std::mutex m_mutex; ///< guards m_requests
    QVector<Request> m_requests;
};
