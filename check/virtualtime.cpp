#include "virtualtime.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <algorithm>
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace VirtualTime {

std::chrono::milliseconds now{0};
static thread_local bool rules = false;

void start()
{
    if (rules)
        return;
    timespec real;
    clock_gettime(CLOCK_MONOTONIC, &real);
    now = 1000s * (real.tv_sec / 1000 + 1);
    rules = true;
    // A loop that would wait, such as that of a dialog, moves the clock itself.
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
    do
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
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

// In place of the C library's, for every library of the program.
extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (!VirtualTime::rules || clock == CLOCK_REALTIME)
        return int(syscall(SYS_clock_gettime, clock, time));
    *time = {VirtualTime::now / 1s, VirtualTime::now % 1s / 1ns};
    return 0;
}

extern "C" Q_DECL_EXPORT int gettimeofday(timeval *time, void *zone) noexcept
{
    if (!VirtualTime::rules)
        return int(syscall(SYS_gettimeofday, time, zone));
    *time = {VirtualTime::now / 1s, VirtualTime::now % 1s / 1us};
    return 0;
}
