#pragma once

#include "orvpluginapi.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <array>
#include <chrono>

/// A camera that answers the transfers of the tracking panel, without hardware or widgets.
class SimulatedCamera : public QObject
{
    Q_OBJECT
public:
    /// The bytes of the status block: one that no panel reads, then the settings.
    enum Field { Reserved, Tracking, Type, Mode, Composition, FieldCount };
    using Status = std::array<quint8, FieldCount>;
    static constexpr std::array<Field, 4> settingFields = {Tracking, Type, Mode, Composition};

    static constexpr qint64 commandSelector = 7; ///< takes commands
    static constexpr qint64 statusSelector = 8;  ///< returns the status block
    static constexpr quint64 blockLength = 60;   ///< bytes of a command and of a status block

    using QObject::QObject;

    /// At start: tracking on, type Basic, mode Standard, composition off.
    const Status &status() const { return m_status; }

    /// Changes the state from the camera's side. Every byte is taken, a meaningless one too.
    void setStatus(const Status &status);
    void setValue(Field field, quint8 value);

    /// A camera that does not answer gives no bytes and obeys no command. It answers by default.
    bool isAnswering() const { return m_answering; }
    void setAnswering(bool answering) { m_answering = answering; }

    /// How long each transfer blocks its caller; 0 by default.
    std::chrono::milliseconds delay() const { return m_delay; }
    void setDelay(std::chrono::milliseconds delay) { m_delay = delay; }

    /// Carries out one transfer. The answer has no bytes if the camera refused or did not answer.
    ExtensionUnit transfer(const ExtensionUnit &unit);

    /// Why the camera refuses this transfer; empty if it takes it.
    static QString refusal(const ExtensionUnit &unit);

    /// In words: a command that is not refused, and a status block.
    static QString describeCommand(const ExtensionUnit &command);
    static QString describeStatus(const Status &status);

    /// For every field but Reserved: its name, the values that a command can set, and the name of
    /// a value. A value that means nothing is named by its number: "7 (unknown)".
    static QString fieldName(Field field);
    static QVector<quint8> knownValues(Field field);
    static QString valueName(Field field, quint8 value);

Q_SIGNALS:
    void statusChanged();

private:
    Status m_status = {0, 1, 0, 1, 0};
    bool m_answering = true;
    std::chrono::milliseconds m_delay{0};
};
