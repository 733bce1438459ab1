#pragma once

#include <QtGlobal>

/// One setting of the camera: the controls it is reached through, the header of its command, its
/// factory value, and where its payload is assembled.
///
/// The command payload: bytes 0 to 3 `header`, byte 4 `valueLength`, then `valueLength` value
/// bytes, then zeros up to `payloadSize`.
struct M24_Extension
{
    qint32 setSelector;          ///< extension-unit control that takes the command
    qint32 getSelector;          ///< extension-unit control that the status is read from
    qint32 defaultValue;         ///< the factory value
    qint32 payloadSize;          ///< bytes; at most 255, the size of ExtensionUnit::data
    quint8 header[4];            ///< FF 53 05 and the command id
    quint8 valueLength;          ///< bytes; at most payloadSize - 5, and at most 4 for an integer
    quint8 *payload = nullptr;   ///< payloadSize bytes, not owned
    quint8 *valueData = nullptr; ///< value bytes to send in place of an integer, not owned
};
