#pragma once

#include "orvpluginapi.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <QTime>
#include <QVariant>

class SimulatedCamera;

/// One exchange over the command channel, in words.
struct Transfer
{
    QTime time;
    QString direction;   ///< "set": data went to the camera or the host; "get": it was asked for
    QString request;     ///< "Setting", "Camera" or "Extension"; the number of an unknown request
    qint64 selector = 0; ///< control of the extension unit; 0 in other requests
    QString meaning;
    QByteArray bytes; ///< the valid bytes sent or answered

    QString firstBytes() const; ///< in hexadecimal, as many as tell a command
    bool isStatusRead() const { return selector != 0 && direction == QLatin1String("get"); }
};

Q_DECLARE_METATYPE(Transfer)

/// The host's end of the command channel: answers for the host's settings, hands transfers to the
/// camera and reports every exchange.
class CommandChannel : public QObject
{
    Q_OBJECT
public:
    /// `camera` must outlive the channel.
    explicit CommandChannel(SimulatedCamera &camera);

    /// The answer to a query for the setting `name`. Other queries get an invalid QVariant.
    void setSetting(const QString &name, const QVariant &value) { m_settings[name] = value; }

    /// Answers one request: what OrvPluginApi::commandChannel is to call. A request or a record
    /// that means nothing gets an invalid QVariant.
    QVariant request(int kind, const QVariant &record);

Q_SIGNALS:
    /// After the exchange, before its answer is returned.
    void transferred(const Transfer &transfer);

private:
    QVariant answerTo(int kind, const QVariant &record, Transfer &transfer) const;
    QVariant transferToCamera(const ExtensionUnit &unit, Transfer &transfer) const;

    SimulatedCamera &m_camera;
    QHash<QString, QVariant> m_settings;
};
