#pragma once

#include <array>

/// The faults that a simulated camera can have.
namespace Fault {
enum Kind { Delay, Error, Short, NoAnswer, Random, RefuseWrites, Unplugged, ChangesItself, Count };
}

/// A value for each fault: milliseconds for Delay, an errno for Error, the length of the block for
/// Short, 1 for the others; `noFault` if the camera does not have it.
constexpr int noFault = -1;
using Faults = std::array<int, Fault::Count>;
constexpr Faults noFaults = {noFault, noFault, noFault, noFault,
                             noFault, noFault, noFault, noFault};
