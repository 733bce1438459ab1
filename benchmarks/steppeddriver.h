#pragma once

#include <QAnimationDriver>
#include <QApplication>
#include <QVariantAnimation>
#include <QWidget>

/// Animations run by this instead of the clock: every run has the same frames.
class SteppedDriver : public QAnimationDriver
{
public:
    SteppedDriver()
    {
        install();
        // Qt counts anew, by the clock, whenever the last animation has ended.
        always.setDuration(1000);
        always.setLoopCount(-1);
        always.start();
    }

    /// Runs the event loop, what is animated and what it paints, for `duration` ms and two frames
    /// more.
    void run(int duration)
    {
        constexpr int frame = 16; // ms
        for (int left = duration + 2 * frame; left > 0; left -= frame) {
            QCoreApplication::processEvents();
            time += frame;
            advanceAnimation();
            QCoreApplication::processEvents();
            // No event loop runs that would delete what has ended.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            // The platform waits some ms of real time before it asks for what needs painting.
            const auto windows = QApplication::topLevelWidgets();
            for (QWidget *const window : windows) {
                QEvent request(QEvent::UpdateRequest);
                QCoreApplication::sendEvent(window, &request);
            }
        }
    }

    qint64 elapsed() const override { return time; }

private:
    qint64 time = 0; // ms
    QVariantAnimation always;
};
