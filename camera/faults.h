#pragma once

#include <QString>

#include <array>

/// What can be wrong with a camera, for the simulated one to have.
namespace Fault {
enum Kind { Delay, Error, Short, NoAnswer, Random, RefuseWrites, Unplugged, ChangesItself, Count };
}

/// The value of each fault: milliseconds, bytes, an errno, 1 for one that has no value; `noFault`
/// for one that the camera has not.
constexpr int noFault = -1;
using Faults = std::array<int, Fault::Count>;
constexpr Faults noFaults = {noFault, noFault, noFault, noFault,
                             noFault, noFault, noFault, noFault};

/// One fault for people: how it is named and what it takes.
struct FaultKind
{
    enum Takes { Nothing, Number, ErrorName };

    const char *name;  ///< on the command line
    const char *title; ///< in a window
    Takes takes;
    int maximum; ///< of a number
    const char *unit;
    const char *explanation; ///< what the camera does, and what a good panel does then
};
extern const std::array<FaultKind, Fault::Count> faultKinds;

/// The errors that a camera can be made to fail with.
extern const std::array<int, 8> faultErrors;

/// Adds a fault in the words of the command line, "name" or "name=value". If it is none, nothing
/// changes and the result says what is wanted instead; else the result is empty.
QString addFault(Faults &faults, const QString &text);
