#pragma once

#include "camera.h"
#include "trackingprotocol.h"

#include <QObject>

#include <array>
#include <mutex>

/// The faults that a simulated camera can have.
namespace Fault {
enum Kind { Delay, Error, Short, NoAnswer, Random, RefuseWrites, Unplugged, ChangesItself, Count };
}

/// The value of each fault, or `noFault`: milliseconds for Delay, an errno for Error, the length of
/// the block for Short, any value for the others.
using Faults = std::array<int, Fault::Count>;
constexpr int noFault = -1;
constexpr Faults noFaults = {noFault, noFault, noFault, noFault,
                             noFault, noFault, noFault, noFault};

/// A tracking camera without hardware, with configurable faults. May be changed while another
/// thread transfers.
class SimulatedCamera : public QObject, public Camera
{
    Q_OBJECT
public:
    using Status = TrackingProtocol::Status;

    using QObject::QObject;

    /// Initially the factory status.
    Status status() const;

    /// Changes the state from the camera's side. Accepts any value, including unknown ones.
    void setStatus(const Status &status);
    void setValue(TrackingProtocol::Field field, quint8 value);

    /// Initially none.
    Faults faults() const;
    void setFaults(const Faults &faults);

    QString name() const override { return "the simulated camera"; }
    CameraRefusal open() override;
    TransferResult readStatus() override;
    /// Returns EINVAL for bytes that are not a command.
    int sendCommand(const QByteArray &command) override;

Q_SIGNALS:
    /// Emitted in the thread that changed the status, possibly that of the transfers.
    void statusChanged();

private:
    /// Waits as long as the fault Delay says. Returns 0, or an errno if the transfer fails.
    int beginTransfer() const;

    mutable std::mutex m_mutex; ///< guards status and faults; not held while signals are emitted
    Status m_status = TrackingProtocol::factoryStatus;
    Faults m_faults = noFaults;
    int m_reads = 0; ///< used only by the thread that transfers
};
