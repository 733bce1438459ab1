#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>

/// The bytes that a tracking camera understands, and their meaning in words.
namespace TrackingProtocol {

/// The bytes of the status block: an unused one, then the settings.
enum Field { Reserved, Tracking, Type, Mode, Composition, FieldCount };
using Status = std::array<quint8, FieldCount>;
constexpr std::array<Field, 4> settingFields = {Tracking, Type, Mode, Composition};

/// Tracking on, type Basic, mode Standard, composition off.
constexpr Status factoryStatus = {0, 1, 0, 1, 0};

constexpr int commandSelector = 7; ///< takes commands
constexpr int statusSelector = 8;  ///< returns the status block
constexpr int blockLength = 60;    ///< bytes of a command and of a status block
constexpr int commandOffset = 3;   ///< of the byte that selects a command's setting
constexpr int valueOffset = 5;     ///< of a command's value

/// The field that a command sets; Reserved if unknown.
Field fieldOf(const QByteArray &command);

/// Why this is not a transfer of the tracking protocol: wrong control, or wrong size or header of a
/// command. Empty if it is one. `bytes` is ignored for reads.
QString framingProblem(bool write, qint64 selector, const QByteArray &bytes);

/// Why a camera would reject this transfer; empty if it would not. `bytes` is ignored for reads.
QString refusal(bool write, qint64 selector, const QByteArray &bytes);

/// Describes a command that refusal() accepts.
QString describeCommand(const QByteArray &command);

/// Describes a status block, which may be incomplete.
QString describeStatus(const QByteArray &block);

/// For every field except Reserved: its name, the values that a command can set, and the name of a
/// value. An unknown value is named by its number: "7 (unknown)".
QString fieldName(Field field);
QVector<quint8> knownValues(Field field);
QString valueName(Field field, quint8 value);

} // namespace TrackingProtocol
