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

/// Passes a tracking panel's transfers to a camera, in a separate thread, so that a slow camera
/// does not block the window.
///
/// Commands are sent in order, and before reads. A new command replaces a waiting one for the same
/// setting. A failed command is not repeated. While the camera is disconnected, commands fail with
/// ENODEV. After each failed read the queue pauses reads, for longer each time, up to five seconds.
class TransferQueue : public QObject
{
    Q_OBJECT
public:
    enum Access { ReadWrite, ReadOnly };

    /// With ReadOnly, commands are reported as not sent.
    explicit TransferQueue(std::shared_ptr<Camera> camera, Access access = ReadWrite);

    /// Calls finish().
    ~TransferQueue() override;

    /// Queues a command and returns at once. TrackingProtocol::refusal() must be empty for it.
    void sendCommand(const QByteArray &command);

    /// Starts a read, or joins the current one, and waits for it: at most 20 ms, or 250 ms the
    /// first time. If it takes longer, returns the newest block that was read after the last
    /// command. Returns no bytes if there is no such block, if the last read failed, or while reads
    /// are paused. Does not run an event loop.
    QByteArray readStatus();

    /// Sends waiting commands for at most two seconds, then stops. Abandons a transfer that takes
    /// longer; the thread then keeps the camera until that transfer ends. Afterwards the queue
    /// reports requests as not sent.
    void finish();

    CameraCondition condition() const { return m_condition; }

Q_SIGNALS:
    /// A transfer has ended or will not be sent, or the camera was disconnected or came back.
    /// Emitted in order, in the thread of this object.
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
