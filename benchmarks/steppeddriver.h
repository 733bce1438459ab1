#pragma once

#include <QAnimationDriver>
#include <QApplication>
#include <QVariantAnimation>
#include <QWidget>

/// Drives animations in fixed steps instead of by the clock, so that every run has the same frames.
class SteppedDriver : public QAnimationDriver
{
public:
    SteppedDriver()
    {
        install();
        // Qt restarts its clock when the last animation ends, so keep one running.
        always.setDuration(1000);
        always.setLoopCount(-1);
        always.start();
    }

    /// Processes events, animations and paints for `duration` ms and two more frames.
    void run(int duration)
    {
        constexpr int frame = 16; // ms
        for (int left = duration + 2 * frame; left > 0; left -= frame) {
            QCoreApplication::processEvents();
            time += frame;
            advanceAnimation();
            QCoreApplication::processEvents();
            // Without a running event loop, Qt does not delete finished animations.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            // The platform requests paints with some ms of delay; do not wait.
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
