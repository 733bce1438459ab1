#include "transfer.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// Enough for the header, the length and the value of a command.
constexpr int shownBytes = 6;

} // namespace

QString Transfer::firstBytes() const
{
    return QString::fromLatin1(bytes.left(shownBytes).toHex(' ')).toUpper();
}

QByteArray Transfer::toJsonLine() const
{
    const QJsonObject object{
        {QStringLiteral("time"), time.toString(Qt::ISODateWithMs)},
        {QStringLiteral("ms"), duration},
        {QStringLiteral("direction"), direction},
        {QStringLiteral("request"), request},
        {QStringLiteral("selector"), selector},
        {QStringLiteral("bytes"), QString::fromLatin1(bytes.toHex())},
        {QStringLiteral("meaning"), meaning},
        {QStringLiteral("result"), result},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}
