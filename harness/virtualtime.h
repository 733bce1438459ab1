#pragma once

#include <chrono>

/// A clock that only the program moves. After start(), Qt's timers, animations and the date follow
/// it in the thread that called start(). Other threads and other clocks, such as CLOCK_BOOTTIME,
/// stay real.
///
/// The clock advances by 10 ms when an event loop of that thread would wait, and when code does
/// nothing but read the clock. A sleep, or a wait for a condition that ends at its time limit,
/// advances it by its length and also takes that long.
namespace VirtualTime {

using namespace std::chrono_literals;

extern std::chrono::milliseconds now;

/// Starts the clock at 1000 s, so that runs are repeatable: coarse timers time out at rounded
/// times. The date starts at the real one.
void start();

/// Handles all events and timers that are due now.
void catchUp();

/// Advances the clock by `span` in steps of 10 ms, and handles what is due.
void advance(std::chrono::milliseconds span);

} // namespace VirtualTime
