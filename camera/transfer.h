#pragma once

#include "trackingprotocol.h"

#include <QByteArray>
#include <QDateTime>
#include <QMetaType>
#include <QString>

/// One exchange over the command channel, or an event of the camera.
struct Transfer
{
    enum Direction {
        Get,   ///< the panel asked for data
        Set,   ///< data went to the camera or the host
        Event, ///< the camera was disconnected, cannot be used or came back
        None,  ///< the channel does not know the request
    };
    enum Outcome { Succeeded, Failed, Superseded, NotSent };

    Direction direction = None;
    int request = 0;       ///< a ChannelRequest::Kind, or an unknown number; 0 in events
    qint64 selector = 0;   ///< control of the extension unit; 0 in other requests and events
    QByteArray bytes = {}; ///< sent or answered
    QString meaning = {};  ///< the exchange or event in words
    Outcome outcome = NotSent;
    int error = 0;                                 ///< errno of a failure
    QDateTime time = QDateTime::currentDateTime(); ///< when it began
    qint64 duration = 0;                           ///< ms

    bool isStatusRead() const
    {
        return direction == Get && selector == TrackingProtocol::statusSelector;
    }
};

Q_DECLARE_METATYPE(Transfer)
