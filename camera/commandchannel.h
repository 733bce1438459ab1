#pragma once

#include "transfer.h"

#include <QObject>
#include <QVariant>

class TransferQueue;

/// The host's end of the command channel. Answers queries for the host's settings, passes transfers
/// to the queue and reports every exchange.
class CommandChannel : public QObject
{
    Q_OBJECT
public:
    /// `queue` must outlive the channel. `language` is the answer to queries for "language", the
    /// only setting that the channel knows: 1 English, 0 Chinese.
    explicit CommandChannel(TransferQueue &queue, int language = 1);

    /// Answers one request; OrvPluginApi::commandChannel calls it. Returns an invalid QVariant for
    /// an unknown request, record or setting.
    QVariant request(int kind, const QVariant &record);

Q_SIGNALS:
    /// Emitted once for each exchange and each event of the camera. A transfer is reported when it
    /// has ended, possibly long after its request. A read that answers several requests is reported
    /// once. Other exchanges are reported before request() returns.
    void transferred(const Transfer &transfer);

private:
    QVariant transferToCamera(const QVariant &record);

    TransferQueue &m_queue;
    const int m_language;
};
