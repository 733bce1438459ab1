#pragma once

#include <chrono>

/// A clock that only the program moves. Once it is started Qt's timers, animations and times of day
/// follow it in the thread that started it. An event loop that waits there moves it on by 10 ms at
/// a time, and so does a loop that does nothing but read it; a sleep, which lasts as long as ever,
/// moves it on by its length. A wait for another thread does not: one with a time limit may last
/// longer than that. The C library's CLOCK_REALTIME stays real: fuzzing engines go by it.
namespace VirtualTime {

using namespace std::chrono_literals;

extern std::chrono::milliseconds now;

/// Begins at the next multiple of 1000 s of CLOCK_MONOTONIC: what coarse timers make of their
/// intervals depends on it.
void start();

/// Handles what is due now, and what comes of it.
void catchUp();

/// Lives through `span` in steps of 10 ms.
void advance(std::chrono::milliseconds span);

} // namespace VirtualTime
