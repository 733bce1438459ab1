#pragma once

#include "transfer.h"

#include <QHash>
#include <QObject>
#include <QVariant>

class TransferQueue;

/// The host's end of the command channel: answers queries for the host's settings, passes transfers
/// to the queue and reports every exchange.
class CommandChannel : public QObject
{
    Q_OBJECT
public:
    /// `queue` must outlive the channel.
    explicit CommandChannel(TransferQueue &queue);

    /// Sets the answer to a query for the setting `name`. Queries for other names get an invalid
    /// QVariant.
    void setSetting(const QString &name, const QVariant &value) { m_settings[name] = value; }

    /// Answers one request; OrvPluginApi::commandChannel calls it. Returns an invalid QVariant for
    /// an unknown request or record.
    QVariant request(int kind, const QVariant &record);

Q_SIGNALS:
    /// Emitted once per exchange and per event of the camera. A transfer is reported when it has
    /// ended, which may be long after its request; a read that answers several requests is reported
    /// once. Other exchanges are reported before request() returns.
    void transferred(const Transfer &transfer);

private:
    QVariant transferToCamera(const QVariant &record);

    TransferQueue &m_queue;
    QHash<QString, QVariant> m_settings;
};
