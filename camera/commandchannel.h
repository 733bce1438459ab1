#pragma once

#include "transfer.h"

#include <QHash>
#include <QObject>
#include <QVariant>

class TransferQueue;

/// The host's end of the command channel: answers for the host's settings, hands transfers to the
/// queue and reports every exchange.
class CommandChannel : public QObject
{
    Q_OBJECT
public:
    /// `queue` must outlive the channel.
    explicit CommandChannel(TransferQueue &queue);

    /// The answer to a query for the setting `name`. Other queries get an invalid QVariant.
    void setSetting(const QString &name, const QVariant &value) { m_settings[name] = value; }

    /// Answers one request: what OrvPluginApi::commandChannel is to call. A request or a record
    /// that means nothing gets an invalid QVariant.
    QVariant request(int kind, const QVariant &record);

Q_SIGNALS:
    /// After an exchange: for a transfer when it is over, which may be long after its request, and
    /// for a read that several requests waited for once; for all others before their answer is
    /// returned. Also after an event of the camera.
    void transferred(const Transfer &transfer);

private:
    QVariant transferToCamera(const QVariant &record);
    void relay(Transfer transfer);

    TransferQueue &m_queue;
    QHash<QString, QVariant> m_settings;
};
