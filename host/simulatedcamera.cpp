#include "simulatedcamera.h"

#include <QStringList>
#include <QThread>

#include <algorithm>
#include <iterator>
#include <numeric>

namespace {

constexpr quint8 commandHeader[] = {0xFF, 0x53, 0x05};

/// One setting of the camera: its values are consecutive, and each has a name.
struct Setting
{
    const char *name;
    quint8 command;
    quint8 firstValue;
    quint8 valueCount;
    std::array<const char *, 4> valueNames;
};

/// In the order of the status block, from its byte 1 on.
constexpr Setting settings[] = {
    {"Tracking", 0x04, 0, 2, {"off", "on"}},
    {"Type", 0x10, 0, 3, {"Basic", "Hand", "Board"}},
    {"Mode", 0x07, 1, 2, {"Standard", "Sport"}},
    {"Composition", 0x13, 0, 4, {"off", "Half Body", "Full Body", "Bodies"}},
};

const Setting &settingOf(SimulatedCamera::Field field)
{
    Q_ASSERT(field > SimulatedCamera::Reserved && field < SimulatedCamera::FieldCount);
    return settings[field - SimulatedCamera::Tracking];
}

/// The field that a command sets; Reserved if there is no such command.
SimulatedCamera::Field fieldOf(const ExtensionUnit &command)
{
    for (const auto field : SimulatedCamera::settingFields) {
        if (settingOf(field).command == command.data[3])
            return field;
    }
    return SimulatedCamera::Reserved;
}

} // namespace

void SimulatedCamera::setStatus(const Status &status)
{
    if (status == m_status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
}

void SimulatedCamera::setValue(Field field, quint8 value)
{
    Status status = m_status;
    status.at(field) = value;
    setStatus(status);
}

ExtensionUnit SimulatedCamera::transfer(const ExtensionUnit &unit)
{
    // A real transfer holds up the caller's thread, and with it the panel, in just this way.
    if (m_delay.count() > 0)
        QThread::msleep(static_cast<unsigned long>(m_delay.count()));

    ExtensionUnit answer;
    answer.selector = unit.selector;
    if (!m_answering || !refusal(unit).isEmpty())
        return answer;
    if (unit.write) {
        setValue(fieldOf(unit), unit.data[5]);
        return unit;
    }
    std::copy(m_status.begin(), m_status.end(), answer.data);
    answer.length = blockLength;
    return answer;
}

QString SimulatedCamera::refusal(const ExtensionUnit &unit)
{
    if (unit.selector != (unit.write ? commandSelector : statusSelector))
        return QStringLiteral("control %1 is not for this").arg(unit.selector);
    if (!unit.write)
        return {};
    if (unit.length != blockLength)
        return QStringLiteral("%1 bytes instead of %2").arg(unit.length).arg(blockLength);
    if (!std::equal(std::begin(commandHeader), std::end(commandHeader), unit.data))
        return QStringLiteral("the header is not FF 53 05");
    const Field field = fieldOf(unit);
    if (field == Reserved)
        return QStringLiteral("unknown command 0x%1").arg(unit.data[3], 2, 16, QLatin1Char('0'));
    if (unit.data[4] != 1)
        return QStringLiteral("a value of %1 bytes instead of 1").arg(unit.data[4]);
    if (!knownValues(field).contains(unit.data[5]))
        return describeCommand(unit);
    return {};
}

QString SimulatedCamera::describeCommand(const ExtensionUnit &command)
{
    const Field field = fieldOf(command);
    return fieldName(field) + QStringLiteral(": ") + valueName(field, command.data[5]);
}

QString SimulatedCamera::describeStatus(const Status &status)
{
    QStringList parts;
    for (const Field field : settingFields)
        parts += fieldName(field).toLower() + QLatin1Char(' ') + valueName(field, status.at(field));
    return parts.join(QStringLiteral(", "));
}

QString SimulatedCamera::fieldName(Field field)
{
    return QString::fromLatin1(settingOf(field).name);
}

QVector<quint8> SimulatedCamera::knownValues(Field field)
{
    QVector<quint8> values(settingOf(field).valueCount);
    std::iota(values.begin(), values.end(), settingOf(field).firstValue);
    return values;
}

QString SimulatedCamera::valueName(Field field, quint8 value)
{
    const int index = value - settingOf(field).firstValue;
    if (index < 0 || index >= settingOf(field).valueCount)
        return QStringLiteral("%1 (unknown)").arg(value);
    return QString::fromLatin1(settingOf(field).valueNames.at(index));
}
