#pragma once

#include <QtGlobal>

/// Describes a setting of the camera: its extension-unit controls, command header, factory value,
/// and the buffer in which its commands are assembled.
///
/// A command payload: bytes 0 to 3 `header`, byte 4 `valueLength`, from byte 5 `valueLength` bytes
/// of value, then zeros up to `payloadSize`.
struct M24_Extension
{
    qint32 setSelector;  ///< extension-unit control that commands are written to
    qint32 getSelector;  ///< extension-unit control that the status is read from
    qint32 defaultValue; ///< the factory value
    qint32 payloadSize;  ///< in bytes; at most 255, the size of ExtensionUnit::data
    quint8 header[4];    ///< FF 53 05 and the command id
    quint8 valueLength; ///< in bytes; at most payloadSize - 5; at most 4 if the value is an integer
    quint8 *payload = nullptr;   ///< payloadSize bytes, not owned
    quint8 *valueData = nullptr; ///< `valueLength` bytes to send instead of an integer, not owned
};
