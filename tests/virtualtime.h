#pragma once

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

/// A clock for a test program that only the test moves: Qt's timers, animations and times of day
/// follow it. Only the main thread sees it. Whatever waits for the clock (QTest::qWait, QTRY_*)
/// would never end here.
namespace VirtualTime {

using namespace std::chrono_literals;

inline std::chrono::milliseconds now = 1000000000s;
inline thread_local bool rules = false;
inline const bool inMainThread = (rules = true);

/// Handles what is due now, and what comes of it.
inline void catchUp()
{
    do
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
}

inline void advance(std::chrono::milliseconds span)
{
    const auto end = now + span;
    do {
        now = std::min(now + 10ms, end);
        catchUp();
    } while (now < end);
}

} // namespace VirtualTime

// In place of the C library's, for every library of the program.
extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (!VirtualTime::rules)
        return int(syscall(SYS_clock_gettime, clock, time));
    using namespace std::chrono_literals;
    *time = {VirtualTime::now / 1s, VirtualTime::now % 1s / 1ns};
    return 0;
}

extern "C" Q_DECL_EXPORT int gettimeofday(timeval *time, void * /*zone*/) noexcept
{
    timespec precise;
    clock_gettime(CLOCK_REALTIME, &precise);
    *time = {precise.tv_sec, precise.tv_nsec / 1000};
    return 0;
}
