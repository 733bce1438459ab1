#pragma once

#include <QString>

struct Transfer;

QString directionText(const Transfer &transfer); ///< "get", "set", "event"; empty if unknown
QString requestText(const Transfer &transfer);   ///< "Extension"; a number if unknown
QString resultText(const Transfer &transfer);    ///< "ok", "EIO", "superseded", "not sent"

/// The first bytes in hexadecimal, enough for the header, the length and the value of a command.
QString firstBytes(const Transfer &transfer);

/// A line of a trace: a JSON object with the keys time, ms, direction, request, selector, bytes,
/// meaning and result, and a newline.
QByteArray toJsonLine(const Transfer &transfer);
