#pragma once

#include "transferworker.h"

#include <QObject>

#include <memory>
#include <thread>

/// Takes the transfers of a tracking panel to a camera, in a thread of its own, so that a slow
/// camera holds up nobody.
///
/// Commands go out in order. Of those for one setting that wait for their turn only the newest goes
/// out. A camera that fails is asked for its status ever less often, down to once in five seconds.
/// While it is disconnected commands fail with ENODEV and are not kept for later. A command that
/// failed is never sent again.
class TransferQueue : public QObject
{
    Q_OBJECT
public:
    enum Access { ReadWrite, ReadOnly };

    /// With ReadOnly nothing is ever sent to the camera.
    explicit TransferQueue(std::shared_ptr<Camera> camera, Access access = ReadWrite);

    /// As finish().
    ~TransferQueue() override;

    /// Returns at once.
    void sendCommand(const QByteArray &command);

    /// Starts a read and waits for it, for 20 ms at most, the first time for 250 ms. If it takes
    /// longer the answer is the newest block that was read after the last command had been sent. No
    /// bytes: there is none. Runs no event loop.
    QByteArray readStatus();

    /// Sends what still waits, for two seconds at most, and ends. A transfer that takes longer is
    /// left to itself, and with it the camera. The queue takes nothing from then on.
    void finish();

    CameraCondition condition() const { return m_condition; }

Q_SIGNALS:
    /// A transfer is over, in the order in which they ended; or the camera went or came back. What
    /// a transfer means is left to the receiver.
    void transferred(const Transfer &transfer);

    void conditionChanged();

private:
    void deliver();

    std::shared_ptr<TransferWorker> m_worker;
    std::thread m_thread;
    CameraCondition m_condition;
    const Access m_access;
    bool m_asked = false;
};
