#pragma once

#include <QString>

struct Transfer;

QString directionText(const Transfer &transfer); ///< "get", "set", "event"; empty if unknown
QString requestText(const Transfer &transfer);   ///< "Extension"; a number if unknown
QString exchangeText(const Transfer &transfer);  ///< "get Extension 8"
QString resultText(const Transfer &transfer);    ///< "ok", "EIO", "superseded", "not sent"

/// The first bytes in hexadecimal, enough for the header, the length and the value of a command.
QString firstBytes(const Transfer &transfer);

/// A line of a trace: a JSON object with the keys time, ms, direction, request, selector, bytes,
/// meaning and result, and a newline. With the key times if the line stands for several reads.
QByteArray toJsonLine(const Transfer &transfer, int times = 1);

/// A text about transfers in the language of the window, phrase by phrase. Leaves unknown words as
/// they are.
QString inWindowLanguage(QString text);
