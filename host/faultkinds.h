#pragma once

#include "faults.h"

#include <QString>

/// How one fault is presented to the user.
struct FaultKind
{
    enum Takes { Nothing, Number, ErrorName };

    const char *name;  ///< on the command line
    const char *title; ///< in a window
    Takes takes;
    int maximum; ///< of a number
    const char *unit;
    const char *explanation; ///< what the camera does, and how a good panel reacts
};
extern const std::array<FaultKind, Fault::Count> faultKinds;

/// The errors that Fault::Error can have.
extern const std::array<int, 8> faultErrors;

/// Adds a fault given as on the command line: "name" or "name=value". Returns an empty string, or
/// without a change the expected form if `text` is invalid.
QString addFault(Faults &faults, const QString &text);
