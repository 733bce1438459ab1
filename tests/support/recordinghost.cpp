#include "recordinghost.h"

QStringList RecordingHost::takeSent()
{
    QStringList sent;
    sent.swap(traffic);
    sent.removeAll("read");
    sent.removeAll("language");
    return sent;
}

void RecordingHost::installIn(OrvPluginApi &plugin)
{
    plugin.commandChannel = [this](int request, const QVariant &record) {
        QVariant reply = answer(request, record);
        if (meanwhile)
            meanwhile();
        return reply;
    };
}

QVariant RecordingHost::answer(int request, const QVariant &record)
{
    if (request == 0 && record.userType() == qMetaTypeId<SettingData>()) {
        const auto query = record.value<SettingData>();
        const bool sound = query.value.userType() == QMetaType::Int && query.value == 0;
        traffic << (sound ? query.name : "malformed query");
        return query.name == "language" ? language : QVariant();
    }
    if (request == 3 && record.userType() == qMetaTypeId<CameraData>()) {
        const auto notice = record.value<CameraData>();
        const bool sound = notice.object && notice.object->objectName() == "rb_hand" &&
                           notice.flag && notice.param1 == 3 && notice.param2 == 0 &&
                           notice.param3 == 2;
        traffic << (sound ? "notice" : "malformed notice");
        return {};
    }
    if (request == 4 && record.userType() == qMetaTypeId<ExtensionUnit>())
        return answer(record.value<ExtensionUnit>());
    traffic << "unknown request";
    return {};
}

QVariant RecordingHost::answer(const ExtensionUnit &unit)
{
    const QByteArray data(reinterpret_cast<const char *>(unit.data), sizeof unit.data);
    if (!unit.write) {
        const bool sound = unit.selector == 8 && unit.length == 0 && data.count('\0') == 255;
        traffic << (sound ? "read" : "malformed read");
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
    QByteArray expected = QByteArray::fromHex("FF530500") + '\1' + data.mid(5, 1);
    expected[3] = data.at(3);
    const bool sound =
        unit.selector == 7 && unit.length == 60 && data == expected.leftJustified(255, '\0');
    traffic << (sound ? QString("%1=%2")
                            .arg(int(data.at(3)), 2, 16, QLatin1Char('0'))
                            .arg(int(data.at(5)))
                      : "malformed command");
    return {};
}
