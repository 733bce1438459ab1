#include "extensionrecord.h"

#include "orvpluginapi.h"

#include <algorithm>

QByteArray payloadOf(const ExtensionUnit &record)
{
    const auto length = std::min<quint64>(record.length, sizeof record.data);
    return {reinterpret_cast<const char *>(record.data), static_cast<int>(length)};
}

ExtensionUnit extensionRecord(bool write, qint64 selector, const QByteArray &payload)
{
    ExtensionUnit record;
    record.write = write;
    record.selector = selector;
    const QByteArray fitting = payload.left(sizeof record.data);
    std::copy(fitting.cbegin(), fitting.cend(), record.data);
    record.length = static_cast<quint64>(fitting.size());
    return record;
}

bool isRequest(int kind, const QVariant &record)
{
    switch (kind) {
    case ChannelRequest::Setting:
        return record.canConvert<SettingData>();
    case ChannelRequest::Camera:
        return record.canConvert<CameraData>();
    case ChannelRequest::Extension:
        return record.canConvert<ExtensionUnit>();
    default:
        return false;
    }
}
