#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <chrono>

/// Measures how long the event loop of a thread stands still, and with it its windows: the longest
/// time between two turns, by a timer that is due every 5 ms.
class StallMeter
{
public:
    /// Begins with the next turn of the event loop of the thread that makes it. Stays in it.
    StallMeter();

    /// 0 until the loop has turned twice.
    std::chrono::nanoseconds longest() const { return m_longest; }

private:
    QTimer m_heart;
    QElapsedTimer m_sinceBeat; // invalid until the first one
    std::chrono::nanoseconds m_longest{0};
};
