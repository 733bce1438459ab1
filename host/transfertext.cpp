#include "transfertext.h"

#include "errortexts.h"
#include "orvpluginapi.h"
#include "transfer.h"

#include <QJsonDocument>
#include <QJsonObject>

QString directionText(const Transfer &transfer)
{
    switch (transfer.direction) {
    case Transfer::Get:
        return "get";
    case Transfer::Set:
        return "set";
    case Transfer::Event:
        return "event";
    case Transfer::None:
        break;
    }
    return "";
}

QString requestText(const Transfer &transfer)
{
    if (transfer.direction == Transfer::Event)
        return "";
    if (transfer.direction == Transfer::None)
        return QString::number(transfer.request);
    switch (transfer.request) {
    case ChannelRequest::Setting:
        return "Setting";
    case ChannelRequest::Camera:
        return "Camera";
    default:
        return "Extension";
    }
}

QString resultText(const Transfer &transfer)
{
    switch (transfer.outcome) {
    case Transfer::Succeeded:
        return "ok";
    case Transfer::Failed:
        return errorName(transfer.error);
    case Transfer::Superseded:
        return "superseded";
    case Transfer::NotSent:
        break;
    }
    return "not sent";
}

QString firstBytes(const Transfer &transfer)
{
    constexpr int shownBytes = 6;
    return QString(transfer.bytes.left(shownBytes).toHex(' ')).toUpper();
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
