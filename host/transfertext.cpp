#include "transfertext.h"

#include "errortexts.h"
#include "orvpluginapi.h"
#include "transfer.h"

#include <QJsonDocument>
#include <QJsonObject>

QString directionText(const Transfer &transfer)
{
    constexpr const char *texts[] = {"get", "set", "event", ""}; // as in Transfer::Direction
    return texts[transfer.direction];
}

QString requestText(const Transfer &transfer)
{
    if (transfer.direction == Transfer::Event)
        return "";
    if (transfer.direction == Transfer::None)
        return QString::number(transfer.request);
    if (transfer.request == ChannelRequest::Setting)
        return "Setting";
    return transfer.request == ChannelRequest::Camera ? "Camera" : "Extension";
}

QString resultText(const Transfer &transfer)
{
    if (transfer.outcome == Transfer::Failed)
        return errorName(transfer.error);
    if (transfer.outcome == Transfer::Succeeded)
        return "ok";
    return transfer.outcome == Transfer::Superseded ? "superseded" : "not sent";
}

QString firstBytes(const Transfer &transfer)
{
    return QString(transfer.bytes.left(6).toHex(' ')).toUpper();
}

QByteArray toJsonLine(const Transfer &transfer)
{
    const QJsonObject object{
        {"time", transfer.time.toString(Qt::ISODateWithMs)},
        {"ms", transfer.duration},
        {"direction", directionText(transfer)},
        {"request", requestText(transfer)},
        {"selector", transfer.selector},
        {"bytes", QString(transfer.bytes.toHex())},
        {"meaning", transfer.meaning},
        {"result", resultText(transfer)},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}
