#pragma once

#include "commandchannel.h"
#include "simulatedcamera.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTextStream>
#include <QTimer>

class QWidget;

/// A fixed walk through the panel: presses its controls with mouse events, changes the camera's
/// state, prints what goes over the channel and compares camera and panel after every step.
class Tour : public QObject
{
    Q_OBJECT
public:
    /// Prints exchanges on standard output from now on, and begins as soon as the event loop runs.
    /// `window` holds the panel's controls and the host's button "pb_reset"; it must be shown by
    /// then, and all three must outlive the tour.
    Tour(SimulatedCamera &camera, CommandChannel &channel, QWidget &window);

Q_SIGNALS:
    /// `agreed`: camera and panel were as they should be after every step.
    void finished(bool agreed);

private:
    void printTransfer(const Transfer &transfer);
    void beginStep();
    void checkStep();
    bool press(const QString &name);
    QStringList differences() const;

    SimulatedCamera &m_camera;
    QWidget &m_window;
    QTextStream m_out;
    QTimer m_timer;
    QElapsedTimer m_sinceStep;
    QElapsedTimer m_sinceDifference; ///< since the step's begin if there was none
    SimulatedCamera::Status m_expected;
    QByteArray m_lastStatus;
    int m_step = -1;
    int m_repeatedReads = 0;
};
