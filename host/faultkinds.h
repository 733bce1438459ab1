#pragma once

#include "simulatedcamera.h"

#include <QString>
#include <QVector>

/// How a fault is presented to the user.
struct FaultKind
{
    const char *usage;       ///< form on the command line: "delay=0..10000"
    const char *title;       ///< in the window; translate it in the context "FaultKind"
    const char *unit;        ///< unit of the values; null if they are not numbers
    const char *explanation; ///< like `title`
};
extern const std::array<FaultKind, Fault::Count> faultKinds;

/// The values that the window offers. If they are numbers, the last one is the largest allowed
/// number.
QVector<int> faultChoices(int fault);

/// A value in words: "20 ms", "EIO", "on" or "off".
QString faultValueName(int fault, int value);

/// All forms that addFault() accepts.
QString faultUsage();

/// Adds a fault from the command line, "name" or "name=value". Returns an empty string. If `text`
/// is invalid, changes nothing and returns the expected form.
QString addFault(Faults &faults, const QString &text);
