#include "virtualtime.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <algorithm>
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

namespace VirtualTime {

std::chrono::milliseconds now{0};
static thread_local bool isStarted = false;

void start()
{
    if (isStarted)
        return;
    timespec real;
    clock_gettime(CLOCK_MONOTONIC, &real);
    now = 1000s * (real.tv_sec / 1000 + 1);
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

} // namespace VirtualTime

using namespace std::chrono_literals;

static std::chrono::milliseconds readClock()
{
    static std::chrono::milliseconds last{0};
    static int reads = 0;
    if (std::exchange(last, VirtualTime::now) != VirtualTime::now)
        reads = 0;
    // Let loops end that only watch the clock.
    if (++reads > 10000)
        VirtualTime::now += 10ms;
    return VirtualTime::now;
}

// These replace the C library's functions for every library of the program.
extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (!VirtualTime::isStarted || clock == CLOCK_REALTIME)
        return int(syscall(SYS_clock_gettime, clock, time));
    const auto now = readClock();
    *time = {now / 1s, now % 1s / 1ns};
    return 0;
}

extern "C" Q_DECL_EXPORT int nanosleep(const timespec *span, timespec *rest)
{
    if (VirtualTime::isStarted)
        VirtualTime::now += std::chrono::ceil<std::chrono::milliseconds>(
            std::chrono::seconds(span->tv_sec) + std::chrono::nanoseconds(span->tv_nsec));
    return int(syscall(SYS_nanosleep, span, rest));
}

extern "C" Q_DECL_EXPORT int gettimeofday(timeval *time, void *zone) noexcept
{
    if (!VirtualTime::isStarted)
        return int(syscall(SYS_gettimeofday, time, zone));
    const auto now = readClock();
    *time = {now / 1s, now % 1s / 1us};
    return 0;
}
