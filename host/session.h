#pragma once

#include "commandchannel.h"
#include "transferqueue.h"

#include <QLabel>
#include <QPointer>

class OrvPluginApi;
class SimulatedCamera;
struct PluginFile;

/// A camera, its queue and channel, and a panel that uses them.
class Session : public QObject
{
    Q_OBJECT
public:
    /// Starts to open the camera. Takes ownership of the plug-in's instance. `language` is the
    /// answer to the panel's query.
    Session(const std::shared_ptr<Camera> &camera, Camera::Access access, const PluginFile &plugin,
            int language);

    /// Calls end().
    ~Session() override;

    TransferQueue &queue() { return m_queue; }
    CommandChannel &channel() { return m_channel; }

    /// The camera if it is a simulated one, else null.
    SimulatedCamera *simulated() const { return m_simulated; }

    /// Creates the panel in `container` when the camera's first read has ended, successfully or
    /// not. Until then shows that the camera is being opened. `container` needs a box layout.
    void showPanelIn(QWidget *container);

    /// Reads the camera and replaces the panel by a new one, because a panel reads mode and
    /// composition only once. Does nothing while there is no panel or no camera. The session does
    /// this itself when the camera is back.
    void renewPanel();

    /// Resets the panel, if there is one.
    void resetToDefault();

    /// Sends waiting commands for at most two seconds, then deletes the panel.
    void end();

Q_SIGNALS:
    void panelCreated();

    /// The camera cannot be used, so there is no panel. A simulated camera that is unplugged does
    /// get a panel, to show how it behaves.
    void refused(const CameraRefusal &refusal);

private:
    void waitForRead(const QString &text);
    void takeReport(const Transfer &transfer);
    void createPanel();

    SimulatedCamera *m_simulated;
    TransferQueue m_queue;
    CommandChannel m_channel;
    const QString m_plugin; ///< file of the plug-in
    QWidget *m_container = nullptr;
    OrvPluginApi *m_api;
    QPointer<QObject> m_instance;
    QPointer<QLabel> m_placeholder; ///< in the panel's place until the panel is created
    bool m_hadPanel = false;
};
