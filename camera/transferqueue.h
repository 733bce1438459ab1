#pragma once

#include "camera.h"
#include "transfer.h"

#include <QObject>

#include <memory>
#include <thread>

/// Result of the last status read and the last command.
struct CameraCondition
{
    static constexpr int unknown = -1;

    int read = unknown; ///< errno of the last status read; 0: success; ENODEV: disconnected
    int write = 0;      ///< errno of the last command; 0: success, or none yet

    bool operator==(const CameraCondition &other) const
    {
        return read == other.read && write == other.write;
    }
};

/// Passes the transfers of a tracking panel to a camera in a thread of its own, so that a slow
/// camera does not block the window.
///
/// Commands are sent in order. Among those for one setting that wait, only the newest is sent. A
/// failed command is not repeated. While the camera is disconnected, commands fail with ENODEV. A
/// camera that fails is read less and less often, down to every five seconds.
class TransferQueue : public QObject
{
    Q_OBJECT
public:
    enum Access { ReadWrite, ReadOnly };

    /// With ReadOnly the camera gets no commands.
    explicit TransferQueue(std::shared_ptr<Camera> camera, Access access = ReadWrite);

    /// Calls finish().
    ~TransferQueue() override;

    /// Queues a command that TrackingProtocol::refusal() accepts, and returns at once.
    void sendCommand(const QByteArray &command);

    /// Starts a read and waits for it, at most 20 ms, or 250 ms the first time. If it takes longer,
    /// returns the newest block that was read after the last command. Returns no bytes if there is
    /// none. Does not run an event loop.
    QByteArray readStatus();

    /// Sends waiting commands for at most two seconds, then stops. A transfer that takes longer is
    /// abandoned, and its thread keeps the camera until it returns. The queue does not accept
    /// anything afterwards.
    void finish();

    CameraCondition condition() const { return m_condition; }

Q_SIGNALS:
    /// A transfer has ended, or the camera was disconnected or came back. In order.
    void transferred(const Transfer &transfer);

    void conditionChanged();

private:
    struct State;

    void deliver();

    std::shared_ptr<State> m_state; ///< shared with the thread, which may outlive the queue
    std::thread m_thread;
    CameraCondition m_condition;
    const Access m_access;
    bool m_firstRead = true;
};
