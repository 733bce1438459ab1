#include "transfertext.h"

#include "errortexts.h"
#include "orvpluginapi.h"
#include "transfer.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>

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

QString exchangeText(const Transfer &transfer)
{
    QStringList words{directionText(transfer), requestText(transfer)};
    if (transfer.selector != 0)
        words += QString::number(transfer.selector);
    return words.join(' ').trimmed();
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

QByteArray toJsonLine(const Transfer &transfer, int times)
{
    QJsonObject object{
        {"time", transfer.time.toString(Qt::ISODateWithMs)},
        {"ms", transfer.duration},
        {"direction", directionText(transfer)},
        {"request", requestText(transfer)},
        {"selector", transfer.selector},
        {"bytes", QString(transfer.bytes.toHex())},
        {"meaning", transfer.meaning},
        {"result", resultText(transfer)},
    };
    if (times > 1)
        object["times"] = times;
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString inWindowLanguage(QString text)
{
    // What texts about transfers consist of. A translation must have as many phrases, in the same
    // order. A phrase stands before the words that it contains.
    constexpr const char *lists[] = {
        QT_TRANSLATE_NOOP("Transfer", "get;set;event;Setting;Camera;Extension"),
        QT_TRANSLATE_NOOP("Transfer",
                          "ok;superseded;not sent;disconnected;back;cannot be used;new panel;"
                          "no answer"),
        QT_TRANSLATE_NOOP("Transfer", "notice from;no widget;no such setting;language;true;false"),
        QT_TRANSLATE_NOOP("Transfer", "refused;wrong control;the header is not;a value of;"
                                      "unknown command;unknown;bytes instead of;instead of;"
                                      "no such request with the record;only;bytes"),
        QT_TRANSLATE_NOOP("Transfer", "Tracking;Type;Mode;Composition;"
                                      "tracking;type;mode;composition;off;on;Basic;Hand;Board;"
                                      "Standard;Sport;Half Body;Full Body;Bodies"),
        QT_TRANSLATE_NOOP("Transfer", "Cannot write the trace;no program reads it;"
                                      "its reader has gone;its reader is too slow")};
    for (const char *const list : lists) {
        const QStringList phrases = QString(list).split(';');
        const QStringList translated = QCoreApplication::translate("Transfer", list).split(';');
        for (int i = 0; i < phrases.size() && translated != phrases; ++i)
            text.replace(QRegularExpression("\\b" + phrases[i] + "\\b"), translated.value(i));
    }
    return text;
}
