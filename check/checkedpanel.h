#pragma once

#include "orvpluginapi.h"
#include "simulatedcamera.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <mutex>

struct Task;

/// One call of a panel's channel.
struct Request
{
    int kind;
    QVariant record;
    bool onGuiThread;

    /// Whether it asks for something; all others tell the camera or the host something.
    bool asks() const;
    /// Of an extension request; empty for all others.
    QByteArray bytes() const;
    QString inWords() const;
};

/// The panel to be checked, in the window of a host, with a simulated camera behind its channel.
///
/// It is never destroyed, only its plug-in and its window are: a panel that is heard from later is
/// still answered.
class CheckedPanel
{
public:
    /// Loads the plug-in and installs the channel. The window has room for any panel, and is not
    /// shown. A plug-in that cannot be loaded ends the check.
    static CheckedPanel &load(const Task &task);

    /// Loads, inserts, shows, and lives through a tenth of a second.
    static CheckedPanel &open(const Task &task);

    QWidget *window() const { return m_window; }
    QWidget *container() const { return m_container; }
    OrvPluginApi &api() const { return *m_api; }
    QPointer<QObject> instance() const { return m_instance; }
    SimulatedCamera &camera() { return m_camera; }

    /// Calls insertWidget().
    void insert() { m_api->insertWidget(m_container); }

    void destroyPanel() { delete m_instance.data(); }

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

    /// What was requested since the last call.
    QVector<Request> takeRequests();
    /// The same without what only asks.
    QVector<Request> takeSent();

    /// The answer to a get; none set: that of the camera.
    std::function<QVariant(const ExtensionUnit &)> answer;
    std::function<void()> duringRequest; ///< called before a request is answered, if set
    QVariant language = 1;

private:
    CheckedPanel() = default;
    QVariant request(int kind, const QVariant &record);

    SimulatedCamera m_camera;
    QPointer<QWidget> m_window = new QWidget;
    QPointer<QWidget> m_container = new QWidget(m_window);
    QPointer<QObject> m_instance;
    OrvPluginApi *m_api = nullptr;
    std::mutex m_mutex; ///< guards m_requests
    QVector<Request> m_requests;
};

/// All of them in words, for the report of a check.
QString inWords(const QVector<Request> &requests);
