#pragma once

#include "orvpluginapi.h"

#include <QStringList>

/// A host's end of the channel, with a camera behind it. Every record is checked to the last byte
/// and written down in a word: "language", "read", "notice", or "04=1" for a command and its value.
class RecordingHost
{
public:
    QVariant language = 1;
    QByteArray status = QByteArray::fromHex("0001000100"); ///< the camera's bytes
    quint64 length = 60;                                   ///< what an answer claims to hold
    QVariant foreignAnswer;                                ///< given to a read if valid
    std::function<void()> meanwhile;                       ///< called in each request, if set
    QStringList traffic;

    /// What crossed since the last call, without what was asked.
    QStringList takeSent()
    {
        QStringList sent;
        sent.swap(traffic);
        sent.removeAll("read");
        sent.removeAll("language");
        return sent;
    }

    void installIn(OrvPluginApi &plugin)
    {
        plugin.commandChannel = [this](int request, const QVariant &record) {
            QVariant reply = answer(request, record);
            if (meanwhile)
                meanwhile();
            return reply;
        };
    }

private:
    QVariant answer(int request, const QVariant &record)
    {
        const auto note = [this](bool isSound, const QString &word) {
            traffic << (isSound ? word : "malformed " + word);
        };
        const auto isRecord = [&](int kind, int type) {
            return request == kind && record.userType() == type;
        };
        if (isRecord(0, qMetaTypeId<SettingData>())) {
            const auto query = record.value<SettingData>();
            note(query.value.userType() == QMetaType::Int && query.value == 0, query.name);
            return query.name == "language" ? language : QVariant();
        }
        if (isRecord(3, qMetaTypeId<CameraData>())) {
            const auto notice = record.value<CameraData>();
            note(notice.object && notice.object->objectName() == "rb_hand" && notice.flag &&
                     notice.param1 == 3 && notice.param2 == 0 && notice.param3 == 2,
                 "notice");
            return {};
        }
        if (!isRecord(4, qMetaTypeId<ExtensionUnit>())) {
            note(false, "request");
            return {};
        }
        const auto unit = record.value<ExtensionUnit>();
        const QByteArray data(reinterpret_cast<const char *>(unit.data), sizeof unit.data);
        if (unit.write) {
            QByteArray due = QByteArray::fromHex("FF5305000100");
            due[3] = data.at(3);
            due[5] = data.at(5);
            note(unit.selector == 7 && unit.length == 60 && data == due.leftJustified(255, '\0'),
                 QString("%1=%2").arg(data.mid(3, 1).toHex().data()).arg(int(data.at(5))));
            return {};
        }
        note(unit.selector == 8 && unit.length == 0 && data.count('\0') == 255, "read");
        if (foreignAnswer.isValid())
            return foreignAnswer;
        ExtensionUnit reply;
        reply.selector = 8;
        reply.length = length;
        // Nothing may depend on the rest.
        const QByteArray bytes = status.leftJustified(sizeof reply.data, '\xA5');
        std::copy(bytes.cbegin(), bytes.cend(), reply.data);
        return QVariant::fromValue(reply);
    }
};
