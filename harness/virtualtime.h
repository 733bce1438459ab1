#pragma once

#include <chrono>

/// A clock that only the program moves. After start(), Qt's timers, animations and times of day
/// follow it in the thread that called start(). The clock advances by 10 ms when an event loop of
/// that thread would wait, or when code does nothing but read it, and by the length of each sleep,
/// which also takes its real time. Waiting for another thread does not move it, so such a wait may
/// last longer than its time limit. CLOCK_REALTIME of the C library stays real.
namespace VirtualTime {

using namespace std::chrono_literals;

extern std::chrono::milliseconds now;

/// Starts the clock at the next multiple of 1000 s of CLOCK_MONOTONIC. Coarse timers round their
/// intervals by the time of day, so a fixed start makes them repeatable.
void start();

/// Handles all events and timers that are due now.
void catchUp();

/// Advances the clock by `span` in steps of 10 ms, and handles what is due.
void advance(std::chrono::milliseconds span);

} // namespace VirtualTime
