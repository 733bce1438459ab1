#pragma once

#include "stallmeter.h"
#include "trackingprotocol.h"
#include "transfer.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTextStream>
#include <QTimer>

#include <optional>

class CommandChannel;
class QWidget;
class SimulatedCamera;

/// Operates the AI Tracking panel in a fixed sequence of steps. Presses its controls with mouse
/// events, changes the simulated camera, prints every exchange on standard output, and checks after
/// each step that camera and panel agree.
class Tour : public QObject
{
    Q_OBJECT
public:
    /// Starts when the event loop runs. `window` contains the panel and the host's button
    /// "pb_reset", and must be visible by then. If `simulated` is null, the tour skips the steps
    /// that change the camera. The arguments must outlive the tour.
    Tour(SimulatedCamera *simulated, CommandChannel &channel, QWidget &window);

Q_SIGNALS:
    /// `agreed`: camera and panel were in the expected state after every step.
    void finished(bool agreed);

private:
    void takeTransfer(const Transfer &transfer);
    void beginNextStep();
    void checkStep();
    void finish(bool agreed);
    bool press(const QString &name);
    QString difference() const;

    SimulatedCamera *m_simulated;
    QWidget &m_window;
    QTextStream m_out;
    QTimer m_timer;
    QElapsedTimer m_sinceStep;
    StallMeter m_stalls;
    int m_step = -1;       ///< -1: waiting for the first status
    int m_agreed = 0;      ///< number of checks since the last difference
    qint64 m_slowest = -1; ///< longest transfer so far in ms; -1: none has ended
    /// The camera's state: the last status read, and the commands that succeeded since.
    std::optional<TrackingProtocol::Status> m_camera;
    QString m_lastRead; ///< the line printed for the last status read
};
