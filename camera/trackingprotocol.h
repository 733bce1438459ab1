#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>

/// What goes over the wire to a tracking camera, in words: commands, and the status block.
namespace TrackingProtocol {

/// The bytes of the status block: one that no panel reads, then the settings.
enum Field { Reserved, Tracking, Type, Mode, Composition, FieldCount };
using Status = std::array<quint8, FieldCount>;
constexpr std::array<Field, 4> settingFields = {Tracking, Type, Mode, Composition};

/// Tracking on, type Basic, mode Standard, composition off.
constexpr Status factoryStatus = {0, 1, 0, 1, 0};

constexpr int commandSelector = 7; ///< takes commands
constexpr int statusSelector = 8;  ///< returns the status block
constexpr int blockLength = 60;    ///< bytes of a command and of a status block
constexpr int commandOffset = 3;   ///< where a command says which setting it is for
constexpr int valueOffset = 5;     ///< where it has the value

/// The field that a command sets; Reserved if there is no such command.
Field fieldOf(const QByteArray &command);

/// Why this is not a transfer of the tracking protocol: control, size or header of a command. Empty
/// if it is one. `bytes` are those of a write.
QString framingProblem(bool write, qint64 selector, const QByteArray &bytes);

/// Why no camera takes this transfer; empty if one does. `bytes` are those of a write.
QString refusal(bool write, qint64 selector, const QByteArray &bytes);

/// In words: a command that is not refused, and a status block, which may be cut short.
QString describeCommand(const QByteArray &command);
QString describeStatus(const QByteArray &block);

/// For every field but Reserved: its name, the values that a command can set, and the name of a
/// value. A value that means nothing is named by its number: "7 (unknown)".
QString fieldName(Field field);
QVector<quint8> knownValues(Field field);
QString valueName(Field field, quint8 value);

} // namespace TrackingProtocol
