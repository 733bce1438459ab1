#pragma once

#include "stallmeter.h"
#include "trackingprotocol.h"
#include "transfer.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTextStream>
#include <QTimer>

class CommandChannel;
class QWidget;
class SimulatedCamera;

/// A fixed walk through the panel: presses its controls with mouse events, changes the simulated
/// camera's state, prints what goes over the channel and after every step compares the panel with
/// what the camera reports.
class Tour : public QObject
{
    Q_OBJECT
public:
    /// Prints exchanges on standard output from now on, and begins as soon as the event loop runs.
    /// `window` holds the panel's controls and the host's button "pb_reset"; it must be shown by
    /// then, and all three must outlive the tour. Without a simulated camera, which may be null,
    /// the steps on the camera's side are left out.
    Tour(SimulatedCamera *simulated, CommandChannel &channel, QWidget &window);

Q_SIGNALS:
    /// `agreed`: camera and panel were as they should be after every step. A step takes as long as
    /// the camera needs.
    void finished(bool agreed);

private:
    void takeTransfer(const Transfer &transfer);
    void printTransfer(const Transfer &transfer);
    bool nextStep();
    void beginStep();
    void checkStep();
    bool press(const QString &name);
    QStringList differences() const;

    SimulatedCamera *m_simulated;
    QWidget &m_window;
    QTextStream m_out;
    QTimer m_timer;
    QElapsedTimer m_sinceStep;
    int m_agreed = 0; ///< checks since the last difference
    StallMeter m_stalls;
    qint64 m_slowest = -1; ///< ms; of the transfers so far; -1: none has ended
    TrackingProtocol::Status m_expected = {};
    QByteArray m_reported; ///< the last status block that the camera gave
    QByteArray m_printed;  ///< of the last status read that was printed
    QString m_printedResult;
    int m_step = -1;
    int m_repeatedReads = 0;
};
