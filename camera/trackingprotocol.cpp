#include "trackingprotocol.h"

#include <QStringList>

#include <numeric>

namespace TrackingProtocol {
namespace {

/// One setting of the camera. Its values are consecutive numbers, each with a name.
struct Setting
{
    const char *name;
    quint8 command;
    quint8 firstValue;
    quint8 valueCount;
    std::array<const char *, 4> valueNames;
};

/// In the order of the status block, starting at its byte 1.
constexpr Setting settings[] = {
    {"Tracking", 0x04, 0, 2, {"off", "on"}},
    {"Type", 0x10, 0, 3, {"Basic", "Hand", "Board"}},
    {"Mode", 0x07, 1, 2, {"Standard", "Sport"}},
    {"Composition", 0x13, 0, 4, {"off", "Half Body", "Full Body", "Bodies"}},
};

const Setting &settingOf(Field field)
{
    return settings[field - Tracking];
}

quint8 byteAt(const QByteArray &bytes, int index)
{
    return static_cast<quint8>(bytes.at(index));
}

} // namespace

Field fieldOf(const QByteArray &command)
{
    for (const Field field : settingFields) {
        if (settingOf(field).command == byteAt(command, commandOffset))
            return field;
    }
    return Reserved;
}

QString framingProblem(bool write, qint64 selector, const QByteArray &bytes)
{
    if (selector != (write ? commandSelector : statusSelector))
        return QString("wrong control %1").arg(selector);
    if (!write)
        return {};
    if (bytes.size() != blockLength)
        return QString("%1 bytes instead of %2").arg(bytes.size()).arg(blockLength);
    if (!bytes.startsWith("\xFF\x53\x05"))
        return "the header is not FF 53 05";
    return {};
}

QString refusal(bool write, qint64 selector, const QByteArray &bytes)
{
    QString problem = framingProblem(write, selector, bytes);
    if (!write || !problem.isEmpty())
        return problem;
    const Field field = fieldOf(bytes);
    if (field == Reserved) {
        return QString("unknown command 0x%1")
            .arg(byteAt(bytes, commandOffset), 2, 16, QLatin1Char('0'));
    }
    const quint8 length = byteAt(bytes, valueOffset - 1);
    if (length != 1)
        return QString("a value of %1 bytes instead of 1").arg(length);
    if (!knownValues(field).contains(byteAt(bytes, valueOffset)))
        return describeCommand(bytes);
    return {};
}

QString describeCommand(const QByteArray &command)
{
    const Field field = fieldOf(command);
    return fieldName(field) + ": " + valueName(field, byteAt(command, valueOffset));
}

QString describeStatus(const QByteArray &block)
{
    QStringList parts;
    for (const Field field : settingFields) {
        if (field < block.size())
            parts += fieldName(field).toLower() + ' ' + valueName(field, byteAt(block, field));
    }
    if (block.size() < blockLength)
        parts.prepend(QString("only %1 bytes").arg(block.size()));
    return parts.join(", ");
}

QString fieldName(Field field)
{
    return settingOf(field).name;
}

QVector<quint8> knownValues(Field field)
{
    QVector<quint8> values(settingOf(field).valueCount);
    std::iota(values.begin(), values.end(), settingOf(field).firstValue);
    return values;
}

QString valueName(Field field, quint8 value)
{
    const int index = value - settingOf(field).firstValue;
    if (index < 0 || index >= settingOf(field).valueCount)
        return QString("%1 (unknown)").arg(value);
    return settingOf(field).valueNames.at(index);
}

} // namespace TrackingProtocol
