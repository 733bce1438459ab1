#include "simulatedcamera.h"

#include <QRandomGenerator>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

using namespace TrackingProtocol;

/// A camera that changes by itself does so at every third read.
static constexpr int readsPerChange = 3;

SimulatedCamera::Status SimulatedCamera::status() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_status;
}

void SimulatedCamera::setStatus(const Status &status)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (status == m_status)
        return;
    m_status = status;
    lock.unlock();
    Q_EMIT statusChanged();
}

void SimulatedCamera::setValue(Field field, quint8 value)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (std::exchange(m_status.at(field), value) == value)
        return;
    lock.unlock();
    Q_EMIT statusChanged();
}

Faults SimulatedCamera::faults() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_faults;
}

void SimulatedCamera::setFaults(const Faults &faults)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults = faults;
}

CameraRefusal SimulatedCamera::open()
{
    const Faults now = faults();
    if (now.at(Fault::Unplugged) != noFault || now.at(Fault::Error) == ENODEV)
        return {CameraRefusal::Disconnected, ENODEV};
    return {};
}

int SimulatedCamera::beginTransfer() const
{
    const int delay = faults().at(Fault::Delay);
    if (delay > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));

    // The camera may have been unplugged during the transfer.
    const Faults now = faults();
    if (now.at(Fault::Unplugged) != noFault)
        return ENODEV;
    if (now.at(Fault::Error) != noFault)
        return now.at(Fault::Error);
    return now.at(Fault::NoAnswer) != noFault ? ETIMEDOUT : 0;
}

TransferResult SimulatedCamera::readStatus()
{
    if (const int error = beginTransfer())
        return {{}, error};
    const Faults faults = this->faults();
    if (faults.at(Fault::ChangesItself) != noFault && ++m_reads % readsPerChange == 0) {
        const Field field = settingFields.at(m_reads / readsPerChange % settingFields.size());
        const QVector<quint8> values = knownValues(field);
        setValue(field, values.at((values.indexOf(status().at(field)) + 1) % values.size()));
    }
    const Status status = this->status();
    QByteArray block(reinterpret_cast<const char *>(status.data()), status.size());
    block.append(blockLength - block.size(), '\0');
    if (faults.at(Fault::Random) != noFault) {
        for (char &byte : block)
            byte = static_cast<char>(QRandomGenerator::global()->bounded(256));
    }
    return {faults.at(Fault::Short) != noFault ? block.left(faults.at(Fault::Short)) : block, 0};
}

int SimulatedCamera::sendCommand(const QByteArray &command)
{
    if (const int error = beginTransfer())
        return error;
    if (!refusal(true, commandSelector, command).isEmpty())
        return EINVAL;
    if (faults().at(Fault::RefuseWrites) != noFault)
        return EPIPE;
    setValue(fieldOf(command), static_cast<quint8>(command.at(valueOffset)));
    return 0;
}
