#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QMetaType>
#include <QString>

/// One exchange over the command channel, or an event of the camera, in words.
struct Transfer
{
    QDateTime time;      ///< when it began
    qint64 duration = 0; ///< ms that it took
    QString direction;   ///< "set": data went to the camera or the host; "get": it was asked for;
                         ///< "event": the camera went or came back
    QString request;     ///< "Setting", "Camera" or "Extension"; the number of an unknown request
    qint64 selector = 0; ///< control of the extension unit; 0 in other requests
    QByteArray bytes;    ///< sent, or answered
    QString meaning;
    QString result; ///< "ok", the name of an errno, "superseded" or "not sent"

    bool isStatusRead() const { return selector != 0 && direction == QLatin1String("get"); }
    bool succeeded() const { return result == QLatin1String("ok"); }

    /// The first bytes in hexadecimal, as many as tell a command.
    QString firstBytes() const;

    /// One line of a trace, with its end: a JSON object with the keys time, ms, direction, request,
    /// selector, bytes, meaning and result.
    QByteArray toJsonLine() const;
};

Q_DECLARE_METATYPE(Transfer)
