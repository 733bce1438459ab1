#pragma once

#include "simulatedcamera.h"

#include <QString>
#include <QVector>

/// How a fault is presented to the user.
struct FaultKind
{
    const char *usage; ///< on the command line: "delay=0..10000"
    const char *title; ///< in the window
    const char *unit;  ///< of the values; null if they are not numbers
    const char *explanation;
};
extern const std::array<FaultKind, Fault::Count> faultKinds;

/// The values that the window offers. The last of several numbers is the largest that is allowed.
QVector<int> faultChoices(int fault);

/// A value in words: "20 ms", "EIO", "on" or "off".
QString faultValueName(int fault, int value);

/// All forms that addFault() accepts.
QString faultUsage();

/// Adds a fault given as on the command line: "name" or "name=value". Returns an empty string, or
/// without a change the expected form if `text` is invalid.
QString addFault(Faults &faults, const QString &text);
