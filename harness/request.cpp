#include "request.h"

#include "extensionrecord.h"
#include "orvpluginapi.h"
#include "trackingprotocol.h"

#include <algorithm>

using namespace TrackingProtocol;

bool Request::isExtension() const
{
    return kind == ChannelRequest::Extension && isRequest(kind, record);
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
    if (!onGuiThread)
        return "on another thread";
    if (!isRequest(kind, record))
        return "there is no such request";
    if (!isExtension())
        return {};
    const ExtensionUnit all = unit();
    QString framing = framingProblem(all.write, all.selector, bytes());
    if (!framing.isEmpty())
        return framing;
    if (all.length != (all.write ? blockLength : 0))
        return QString("a length of %1").arg(all.length);
    const int valueLength = all.write ? all.data[valueOffset - 1] : 0;
    const int end = all.write ? valueOffset + valueLength : 0;
    if (end > blockLength)
        return QString("a value of %1 bytes").arg(valueLength);
    const bool isPadded =
        std::none_of(all.data + end, std::end(all.data), [](quint8 byte) { return byte != 0; });
    return isPadded ? "" : "bytes beyond the value";
}

QString Request::inWords() const
{
    const ExtensionUnit all = unit();
    QString words = QString("a request of kind %1 with a \"%2\"").arg(kind).arg(record.typeName());
    if (isExtension())
        words =
            QString("a %1 control %2").arg(all.write ? "write to" : "read of").arg(all.selector);
    QString details = problem();
    if (details.isEmpty() && all.write)
        details = refusal(true, all.selector, bytes());
    if (details.isEmpty() && all.write)
        details = describeCommand(bytes());
    return details.isEmpty() ? words : words + " (" + details + ')';
}
