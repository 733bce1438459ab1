#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>

/// Measures how long an event loop, and with it the windows, is blocked: the longest time between
/// two timeouts of a timer with an interval of 5 ms.
class StallMeter
{
public:
    /// Measures the current thread's event loop, beginning with its next turn.
    StallMeter()
    {
        QObject::connect(&m_heart, &QTimer::timeout, &m_heart, [this] {
            if (m_sinceBeat.isValid())
                m_longest =
                    std::max(m_longest, std::chrono::nanoseconds(m_sinceBeat.nsecsElapsed()));
            m_sinceBeat.start();
        });
        m_heart.setTimerType(Qt::PreciseTimer);
        m_heart.start(5);
    }

    /// 0 until the timer has timed out twice.
    std::chrono::nanoseconds longest() const { return m_longest; }

private:
    QTimer m_heart;
    QElapsedTimer m_sinceBeat; // invalid until the first beat
    std::chrono::nanoseconds m_longest{0};
};
