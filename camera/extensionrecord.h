#pragma once

#include "devicerecords.h"

#include <QByteArray>

/// The valid bytes of a record: the first `length` bytes of `data`, at most 255.
QByteArray payloadOf(const ExtensionUnit &record);

/// A record for the control `selector`, with at most the first 255 bytes of `payload`.
ExtensionUnit extensionRecord(bool write, qint64 selector, const QByteArray &payload);

/// Whether `record` is of the type that requests of this kind (ChannelRequest::Kind) have. False
/// for an unknown kind.
bool isRequest(int kind, const QVariant &record);
