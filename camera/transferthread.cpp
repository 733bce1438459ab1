#include "orvpluginapi.h"
#include "trackingprotocol.h"
#include "transferstate.h"

#include <algorithm>
#include <cerrno>
#include <utility>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

namespace {

constexpr auto lookInterval = 1s;
constexpr std::chrono::milliseconds shortestPause = 500ms;
constexpr std::chrono::milliseconds longestPause = 5s;

} // namespace

Transfer TransferQueue::State::readRecord()
{
    return {Transfer::Get, ChannelRequest::Extension, statusSelector, {}, "no answer"};
}

/// Tells the queue that there is something to deliver.
void TransferQueue::State::announce()
{
    if (queue)
        QMetaObject::invokeMethod(queue, &TransferQueue::deliver, Qt::QueuedConnection);
}

void TransferQueue::State::report(Transfer transfer, Transfer::Outcome outcome, int error)
{
    transfer.outcome = outcome;
    transfer.error = error;
    records.push_back(transfer);
    announce();
}

void TransferQueue::State::reportResult(const Transfer &transfer, int error)
{
    report(transfer, error == 0 ? Transfer::Succeeded : Transfer::Failed, error);
    if (transfer.selector != commandSelector)
        return;
    const Field field = fieldOf(transfer.bytes);
    if (error == 0)
        condition.failedCommands.erase(field);
    else
        condition.failedCommands[field] = {quint8(transfer.bytes.at(valueOffset)), error};
}

/// Thread loop; runs until told to finish.
void TransferQueue::State::run()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (queue && (hasCommands() || !finishing)) {
        if (nextLook.hasExpired())
            openCamera(lock);
        else if (hasCommands() || readWanted)
            transfer(lock);
        else
            changed.wait_for(lock, nextLook.remainingTimeAsDuration());
    }
}

void TransferQueue::State::openCamera(std::unique_lock<std::mutex> &lock)
{
    opening = true;
    lock.unlock();
    const CameraRefusal refusal = camera->open();
    lock.lock();
    opening = false;
    nextLook.setRemainingTime(lookInterval);
    if (refusal.error) {
        refuse(refusal);
    } else if (isRefused() || condition.state == CameraCondition::Opening) {
        if (isRefused())
            report({Transfer::Event, 0, 0, {}, backMeaning}, Transfer::Succeeded);
        condition.state = CameraCondition::Connected;
        pause = 0ms;
        readPause = {};
        announce();
    }
    changed.notify_all();
}

void TransferQueue::State::transfer(std::unique_lock<std::mutex> &lock)
{
    begin();
    Transfer transfer = *current;
    lock.unlock();
    TransferResult result;
    if (transfer.isStatusRead())
        result = camera->readStatus();
    else
        result.error = camera->sendCommand(transfer.bytes);
    lock.lock();
    if (!queue)
        return;
    transfer.duration = condition.running.elapsed();
    condition.running.invalidate();
    current.reset();
    if (transfer.isStatusRead())
        endRead(transfer, result);
    else
        reportResult(transfer, result.error);
    if (result.error == ENODEV)
        refuse({CameraRefusal::Disconnected, ENODEV, camera->name()});
    // While transfers succeed or a camera has just been lost, there is nothing to look for.
    if (result.error == 0 || result.error == ENODEV)
        nextLook.setRemainingTime(lookInterval);
    changed.notify_all();
}

void TransferQueue::State::begin()
{
    if (!current && !waitingCommands.empty()) {
        current = waitingCommands.front();
        waitingCommands.pop_front();
    } else if (!current) {
        current = readRecord();
        readWanted = false;
        readIsCurrent = true;
    }
    current->time = QDateTime::currentDateTime();
    condition.running.start();
}

void TransferQueue::State::endRead(Transfer read, const TransferResult &result)
{
    read.bytes = result.bytes;
    if (!result.bytes.isEmpty())
        read.meaning = describeStatus(result.bytes);
    reportResult(read, result.error);
    if (result.error == 0) {
        if (readIsCurrent)
            block = result.bytes;
        pause = 0ms;
        condition.state = CameraCondition::Connected;
        return;
    }
    block.clear();
    readWanted = false;
    pause = std::clamp(2 * pause, shortestPause, longestPause);
    readPause.setRemainingTime(pause);
    condition.state = CameraCondition::Failing;
    condition.error = result.error;
}

/// The camera was unplugged or cannot be used.
void TransferQueue::State::refuse(const CameraRefusal &refusal)
{
    const bool isNew = !isRefused() || condition.refusal.reason != refusal.reason ||
                       condition.refusal.error != refusal.error;
    condition.state = CameraCondition::Refused;
    condition.refusal = refusal;
    if (!isNew)
        return;
    const bool isGone = refusal.reason == CameraRefusal::Disconnected;
    reportResult({Transfer::Event, 0, 0, {}, isGone ? "disconnected" : "cannot be used"},
                 refusal.error);
    block.clear();
    readWanted = false;
    prefetched = false;
    if (current)
        waitingCommands.push_front(*std::exchange(current, {}));
    for (const Transfer &command : std::exchange(waitingCommands, {}))
        reportResult(command, refusal.error);
}

void TransferQueue::State::enqueue(const Transfer &command)
{
    // A block that was read before this command may be out of date.
    block.clear();
    readIsCurrent = false;
    prefetched = false;
    if (!current && waitingCommands.empty()) {
        current = command;
    } else {
        const auto old = std::find_if(
            waitingCommands.begin(), waitingCommands.end(),
            [&](const Transfer &other) { return fieldOf(other.bytes) == fieldOf(command.bytes); });
        if (old != waitingCommands.end()) {
            report(*old, Transfer::Superseded);
            waitingCommands.erase(old);
        }
        waitingCommands.push_back(command);
    }
    changed.notify_all();
}
