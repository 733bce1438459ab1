#include "virtualtime.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

static std::chrono::nanoseconds spanOf(const timespec &time)
{
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

static timespec timespecOf(std::chrono::nanoseconds span)
{
    return {span / 1s, span % 1s / 1ns};
}

static timespec realTime(clockid_t clock)
{
    timespec time;
    syscall(SYS_clock_gettime, clock, &time);
    return time;
}

namespace VirtualTime {

std::chrono::milliseconds now{0};
static thread_local bool isStarted = false;
static std::chrono::nanoseconds dateAtZero; ///< what CLOCK_REALTIME shows when `now` is 0

void start()
{
    if (isStarted)
        return;
    now = 1000s;
    dateAtZero = spanOf(realTime(CLOCK_REALTIME)) - now;
    isStarted = true;
    // An event loop, such as a dialog's, moves the clock instead of waiting.
    if (auto *const dispatcher = QAbstractEventDispatcher::instance()) {
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, dispatcher,
                         [dispatcher] {
                             now += 10ms;
                             dispatcher->wakeUp();
                         });
    }
}

void catchUp()
{
    // Limited, because a timer with an interval of 0 is always due.
    for (int turns = 0; turns < 100; ++turns) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents))
            return;
    }
}

void advance(std::chrono::milliseconds span)
{
    const auto end = now + span;
    do {
        now = std::min(now + 10ms, end);
        catchUp();
    } while (now < end);
}

/// What the virtual `clock` shows now.
static std::chrono::nanoseconds timeOn(clockid_t clock)
{
    return now + (clock == CLOCK_REALTIME ? dateAtZero : 0ns);
}

} // namespace VirtualTime

using namespace VirtualTime;

// These replace the C library's functions for every library of the program.
extern "C" {
Q_DECL_EXPORT int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (!isStarted || (clock != CLOCK_MONOTONIC && clock != CLOCK_REALTIME))
        return int(syscall(SYS_clock_gettime, clock, time));
    static std::chrono::milliseconds last{0};
    static int reads = 0;
    if (std::exchange(last, now) != now)
        reads = 0;
    // Let loops end that only watch the clock.
    if (++reads > 10000)
        now += 10ms;
    *time = timespecOf(timeOn(clock));
    return 0;
}

Q_DECL_EXPORT int gettimeofday(timeval *time, void * /*zone*/) noexcept
{
    timespec date;
    clock_gettime(CLOCK_REALTIME, &date);
    *time = {date.tv_sec, date.tv_nsec / 1000};
    return 0;
}

Q_DECL_EXPORT int nanosleep(const timespec *span, timespec *rest)
{
    if (isStarted)
        now += std::chrono::ceil<std::chrono::milliseconds>(spanOf(*span));
    return int(syscall(SYS_nanosleep, span, rest));
}

Q_DECL_EXPORT int usleep(useconds_t microseconds)
{
    const timespec span = timespecOf(std::chrono::microseconds(microseconds));
    return nanosleep(&span, nullptr);
}

// The thread sanitizer has its own versions of these two.
#ifndef __SANITIZE_THREAD__
Q_DECL_EXPORT int pthread_cond_clockwait(pthread_cond_t *condition, pthread_mutex_t *mutex,
                                         clockid_t clock, const timespec *end)
{
    static const auto wait = reinterpret_cast<decltype(&pthread_cond_clockwait)>(
        dlsym(RTLD_NEXT, "pthread_cond_clockwait"));
    if (!isStarted)
        return wait(condition, mutex, clock, end);
    const auto span = spanOf(*end) - timeOn(clock);
    const timespec realEnd = timespecOf(spanOf(realTime(CLOCK_MONOTONIC)) + span);
    const int result = wait(condition, mutex, CLOCK_MONOTONIC, &realEnd);
    if (result == ETIMEDOUT && span > 0ns)
        now += std::chrono::ceil<std::chrono::milliseconds>(span);
    return result;
}

// The clock is that of the condition. A date is far larger than the virtual time.
Q_DECL_EXPORT int pthread_cond_timedwait(pthread_cond_t *condition, pthread_mutex_t *mutex,
                                         const timespec *end)
{
    const bool isDate = spanOf(*end) > 24h * 365 * 20;
    return pthread_cond_clockwait(condition, mutex, isDate ? CLOCK_REALTIME : CLOCK_MONOTONIC, end);
}
#endif
}
