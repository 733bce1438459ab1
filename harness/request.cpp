#include "request.h"

#include "extensionrecord.h"
#include "orvpluginapi.h"
#include "trackingprotocol.h"

#include <algorithm>

using namespace TrackingProtocol;

bool Request::isExtension() const
{
    return kind == ChannelRequest::Extension && record.canConvert<ExtensionUnit>();
}

ExtensionUnit Request::unit() const
{
    return isExtension() ? record.value<ExtensionUnit>() : ExtensionUnit();
}

QByteArray Request::bytes() const
{
    return payloadOf(unit());
}

bool Request::asks() const
{
    return kind == ChannelRequest::Setting || (isExtension() && !unit().write);
}

QString Request::problem() const
{
    const bool isOther = (kind == ChannelRequest::Setting && record.canConvert<SettingData>()) ||
                         (kind == ChannelRequest::Camera && record.canConvert<CameraData>());
    if (!isExtension())
        return isOther ? "" : "there is no such request";
    const ExtensionUnit all = unit();
    if (all.length > sizeof all.data || (!all.write && all.length != 0))
        return QString("a length of %1").arg(all.length);
    QString framing = framingProblem(all.write, all.selector, bytes());
    if (!framing.isEmpty())
        return framing;
    const quint64 end = all.write ? valueOffset + quint64(all.data[valueOffset - 1]) : 0;
    if (end > all.length)
        return QString("a value of %1 bytes").arg(all.data[valueOffset - 1]);
    const bool isPadded =
        std::none_of(all.data + end, std::end(all.data), [](quint8 byte) { return byte != 0; });
    return isPadded ? "" : "bytes beyond the value";
}

QString Request::inWords() const
{
    const ExtensionUnit all = unit();
    QString words =
        isExtension()
            ? QString(all.write ? "a write to control %1" : "a read of control %1")
                  .arg(all.selector)
            : QString("a request of kind %1 with a \"%2\"").arg(kind).arg(record.typeName());
    if (!onGuiThread)
        words += " on another thread";
    QString more = problem();
    if (all.write && more.isEmpty())
        more = refusal(true, all.selector, bytes());
    if (all.write && more.isEmpty())
        more = describeCommand(bytes());
    return more.isEmpty() ? words : words + " (" + more + ')';
}
