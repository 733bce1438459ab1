#include "stallmeter.h"

#include <algorithm>

StallMeter::StallMeter()
{
    using namespace std::chrono;
    QObject::connect(&m_heart, &QTimer::timeout, &m_heart, [this] {
        if (m_sinceBeat.isValid())
            m_longest = std::max(m_longest, nanoseconds(m_sinceBeat.nsecsElapsed()));
        m_sinceBeat.start();
    });
    m_heart.setTimerType(Qt::PreciseTimer);
    m_heart.start(milliseconds(5));
}
