#pragma once

#include "extensionrecord.h"
#include "orvpluginapi.h"
#include "recordingchannel.h"

#include <QStringList>

/// The host's end of the channel, with a camera behind it. Records each request as a word:
/// "language", "read", "notice", or "04=1" for a command and its value.
class RecordingHost : public RecordingChannel
{
public:
    QByteArray status = QByteArray::fromHex("0001000100"); ///< the camera's bytes
    quint64 length = 60;                                   ///< the length of an answer
    QVariant foreignAnswer;                                ///< if valid, the answer to each read
    std::function<void()> meanwhile;                       ///< if set, called during each request
    QStringList traffic;

    /// The words since the last call, without reads and queries.
    QStringList takeSent()
    {
        QStringList sent;
        sent.swap(traffic);
        sent.removeAll("read");
        sent.removeAll("language");
        takeRequests(); // keeps long tests small
        return sent;
    }

protected:
    QVariant answer(const Request &request) override
    {
        traffic << word(request);
        const QVariant reply = request.kind == ChannelRequest::Extension && request.asks()
                                   ? statusAnswer()
                                   : RecordingChannel::answer(request);
        if (meanwhile)
            meanwhile();
        return reply;
    }

private:
    static QString word(const Request &request)
    {
        if (!request.problem().isEmpty())
            return request.problem();
        if (request.kind == ChannelRequest::Setting)
            return request.record.value<SettingData>().name;
        if (request.kind == ChannelRequest::Camera) {
            const auto notice = request.record.value<CameraData>();
            const bool isRight = notice.object->objectName() == "rb_hand" && notice.flag &&
                                 notice.param1 == 3 && notice.param2 == 0 && notice.param3 == 2;
            return isRight ? "notice" : "wrong notice";
        }
        if (request.asks())
            return "read";
        const ExtensionUnit unit = request.unit();
        return QString("%1=%2").arg(unit.data[3], 2, 16, QChar('0')).arg(unit.data[5]);
    }

    QVariant statusAnswer() const
    {
        if (foreignAnswer.isValid())
            return foreignAnswer;
        // The panel must not depend on the bytes after the status.
        ExtensionUnit reply = extensionRecord(false, 8, status.leftJustified(255, '\xA5'));
        reply.length = length;
        return QVariant::fromValue(reply);
    }
};
