#pragma once

#include "cameracondition.h"
#include "transfer.h"

#include <QObject>

#include <memory>
#include <thread>

/// Passes a tracking panel's transfers to a camera, in a separate thread, so that a slow camera
/// does not block the window. Opens the camera in that thread, and sees about once a second whether
/// it is still there or has come back.
///
/// Commands are sent in order, and before reads. A new command replaces a waiting one for the same
/// setting. A failed command is not repeated. While the camera is refused, commands fail at once
/// and reads get no answer. After each failed read the queue pauses reads, for longer each time, up
/// to five seconds.
class TransferQueue : public QObject
{
    Q_OBJECT
public:
    /// Transfer::meaning of the event that the camera is back.
    static constexpr const char *backMeaning = "back";

    /// With ReadOnly, commands are reported as not sent.
    explicit TransferQueue(std::shared_ptr<Camera> camera,
                           Camera::Access access = Camera::ReadWrite);

    /// Calls finish().
    ~TransferQueue() override;

    /// Queues a command and returns at once. TrackingProtocol::refusal() must be empty for it.
    void sendCommand(const QByteArray &command);

    /// Starts a read for a new panel and returns at once. The next readStatus() returns what it
    /// read, without another transfer. Forgets which commands failed. Does nothing while the camera
    /// is refused.
    void prefetchStatus();

    /// Starts a read, or joins the current one, and waits for it: at most 20 ms, or 250 ms the
    /// first time. If it takes longer, returns the newest block that was read after the last
    /// command. Returns no bytes if there is no such block, if the last read failed, or while reads
    /// are paused. Does not run an event loop.
    QByteArray readStatus();

    /// Sends waiting commands for at most two seconds, then stops. Abandons a transfer that takes
    /// longer; the thread then keeps the camera until that transfer ends. Afterwards the queue
    /// reports requests as not sent.
    void finish();

    CameraCondition condition() const;
    QString cameraName() const { return m_cameraName; }

Q_SIGNALS:
    /// A transfer has ended or will not be sent, or the camera was refused or came back.
    /// Emitted in order, in the thread of this object.
    void transferred(const Transfer &transfer);

    /// The condition may have changed.
    void conditionChanged();

private:
    struct State;

    void deliver();

    const QString m_cameraName;
    std::shared_ptr<State> m_state; ///< shared with the thread, which may outlive the queue
    std::thread m_thread;
    bool m_firstRead = true;
};
