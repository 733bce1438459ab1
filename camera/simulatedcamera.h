#pragma once

#include "camera.h"
#include "faults.h"
#include "trackingprotocol.h"

#include <QObject>

#include <mutex>

/// A camera that answers the transfers of the tracking panel, without hardware, and has the faults
/// that it is given. It may be changed while another thread transfers.
class SimulatedCamera : public QObject, public Camera
{
    Q_OBJECT
public:
    using Status = TrackingProtocol::Status;

    using QObject::QObject;

    /// The factory status at start.
    Status status() const;

    /// Changes the state from the camera's side. Every byte is taken, a meaningless one too.
    void setStatus(const Status &status);
    void setValue(TrackingProtocol::Field field, quint8 value);

    /// None at start.
    Faults faults() const;
    void setFaults(const Faults &faults);

    TransferResult read(int selector) override;
    TransferResult write(int selector, const QByteArray &bytes) override;

Q_SIGNALS:
    /// Emitted in the thread that changed it, which may be that of the transfers.
    void statusChanged();

private:
    /// Takes the time of a transfer. Returns the errno that it fails with, or 0.
    int beginTransfer() const;

    mutable std::mutex m_mutex; ///< guards what follows; not held while signals are emitted
    Status m_status = TrackingProtocol::factoryStatus;
    Faults m_faults = noFaults;
    int m_reads = 0;
};
