#pragma once

#include <chrono>

/// A clock that only the program moves. After start(), Qt's timers, animations and time of day
/// follow it in the thread that called start(). Other threads keep the real clock, and
/// CLOCK_REALTIME stays real everywhere.
///
/// The clock advances by 10 ms when an event loop of that thread would wait, and when code does
/// nothing but read the clock. A sleep advances it by the length of the sleep and also takes real
/// time. Waiting for another thread does not advance it, so such a wait may exceed its time limit.
namespace VirtualTime {

using namespace std::chrono_literals;

extern std::chrono::milliseconds now;

/// Starts the clock at the next multiple of 1000 s of CLOCK_MONOTONIC. Coarse timers time out at
/// rounded times, so such a start makes runs repeatable.
void start();

/// Handles all events and timers that are due now.
void catchUp();

/// Advances the clock by `span` in steps of 10 ms, and handles what is due.
void advance(std::chrono::milliseconds span);

} // namespace VirtualTime
