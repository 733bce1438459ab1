#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>

/// The commands and the status block of a tracking camera, and their meaning in words.
namespace TrackingProtocol {

/// The bytes of the status block: an unused one, then the settings.
enum Field { Reserved, Tracking, Type, Mode, Composition, FieldCount };
using Status = std::array<quint8, FieldCount>;
constexpr std::array<Field, 4> settingFields = {Tracking, Type, Mode, Composition};

/// Tracking on, type Basic, mode Standard, composition off.
constexpr Status factoryStatus = {0, 1, 0, 1, 0};

constexpr int commandSelector = 7; ///< control that takes commands
constexpr int statusSelector = 8;  ///< control that returns the status block
constexpr int blockLength = 60;    ///< size of a command and of a status block, in bytes
constexpr int commandOffset = 3;   ///< offset of the byte that selects a command's setting
constexpr int valueOffset = 5;     ///< offset of a command's value

/// The field that a command sets; Reserved if unknown.
Field fieldOf(const QByteArray &command);

/// Why this is not a transfer of the tracking protocol: a wrong control, or a command with a wrong
/// size or header. Empty if it is one. `bytes` is ignored for reads.
QString framingProblem(bool write, qint64 selector, const QByteArray &bytes);

/// Why a camera would reject this transfer; empty if it would accept it. `bytes` is ignored for
/// reads.
QString refusal(bool write, qint64 selector, const QByteArray &bytes);

/// Describes a command with a known setting, even if its value is unknown.
QString describeCommand(const QByteArray &command);

/// Describes a status block, which may be incomplete.
QString describeStatus(const QByteArray &block);

/// These accept every field except Reserved. They return its name, the values that a command can
/// set, and the name of a value, which is "7 (unknown)" for an unknown one.
QString fieldName(Field field);
QVector<quint8> knownValues(Field field);
QString valueName(Field field, quint8 value);

} // namespace TrackingProtocol
