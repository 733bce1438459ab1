#include "transferqueue.h"

#include "orvpluginapi.h"
#include "trackingprotocol.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace TrackingProtocol;

constexpr auto answerTime = 20ms;
constexpr auto firstAnswerTime = 250ms;
constexpr auto finishTime = 2s;
/// Grace period for a read in flight, after all commands have been sent.
constexpr auto lastReadTime = 100ms;
constexpr std::chrono::milliseconds shortestPause = 500ms;
constexpr std::chrono::milliseconds longestPause = 5s;

Transfer commandRecord(const QByteArray &command)
{
    return {Transfer::Set, ChannelRequest::Extension, commandSelector, command,
            describeCommand(command)};
}

Transfer readRecord()
{
    return {Transfer::Get, ChannelRequest::Extension, statusSelector, {}, "no answer"};
}

} // namespace

/// The state that the queue shares with its thread.
struct TransferQueue::State
{
    const std::shared_ptr<Camera> camera;

    std::mutex mutex; ///< guards the members below
    std::condition_variable changed;
    TransferQueue *queue; ///< null after finish(): the thread reports nothing more

    QByteArray commandInFlight; ///< being sent, or about to be
    std::deque<QByteArray> waitingCommands;
    bool readWanted = false;
    bool readInFlight = false;
    bool readIsCurrent = false; ///< no command arrived since the last read began
    QByteArray block;           ///< the newest block; empty after a later command or failure
    QDeadlineTimer readPause;   ///< no reads before it expires
    std::chrono::milliseconds pause{0};
    CameraCondition condition;
    std::vector<Transfer> records; ///< not yet delivered
    bool finishing = false;        ///< accept nothing more, but send the waiting commands

    State(std::shared_ptr<Camera> itsCamera, TransferQueue *itsQueue)
        : camera(std::move(itsCamera))
        , queue(itsQueue)
    {
    }

    bool hasCommands() const { return !commandInFlight.isEmpty() || !waitingCommands.empty(); }

    void run();
    Transfer beginCommand();
    void endCommand(const Transfer &transfer, int error);
    Transfer beginRead();
    void endRead(Transfer transfer, const TransferResult &result);
    void enqueue(const QByteArray &command);
    void disconnect();

    void report(Transfer transfer, Transfer::Outcome outcome, int error = 0);
    void reportResult(const Transfer &transfer, int error);
};

void TransferQueue::State::report(Transfer transfer, Transfer::Outcome outcome, int error)
{
    transfer.outcome = outcome;
    transfer.error = error;
    records.push_back(transfer);
    if (queue)
        QMetaObject::invokeMethod(queue, &TransferQueue::deliver, Qt::QueuedConnection);
}

void TransferQueue::State::reportResult(const Transfer &transfer, int error)
{
    report(transfer, error == 0 ? Transfer::Succeeded : Transfer::Failed, error);
}

/// Thread loop; runs until told to finish.
void TransferQueue::State::run()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (queue && (hasCommands() || !finishing)) {
        if (!hasCommands() && !readWanted) {
            changed.wait(lock);
            continue;
        }
        Transfer transfer = hasCommands() ? beginCommand() : beginRead();
        TransferResult result;
        lock.unlock();
        QElapsedTimer timer;
        timer.start();
        if (transfer.isStatusRead())
            result = camera->readStatus();
        else
            result.error = camera->sendCommand(transfer.bytes);
        transfer.duration = timer.elapsed();
        lock.lock();
        if (!queue)
            return;
        if (transfer.isStatusRead())
            endRead(transfer, result);
        else
            endCommand(transfer, result.error);
        changed.notify_all();
    }
}

Transfer TransferQueue::State::beginCommand()
{
    if (commandInFlight.isEmpty()) {
        commandInFlight = waitingCommands.front();
        waitingCommands.pop_front();
    }
    return commandRecord(commandInFlight);
}

void TransferQueue::State::endCommand(const Transfer &transfer, int error)
{
    commandInFlight.clear();
    condition.write = error;
    reportResult(transfer, error);
    if (error == ENODEV)
        disconnect();
}

Transfer TransferQueue::State::beginRead()
{
    readWanted = false;
    readInFlight = true;
    readIsCurrent = true;
    return readRecord();
}

void TransferQueue::State::endRead(Transfer transfer, const TransferResult &result)
{
    readInFlight = false;
    transfer.bytes = result.bytes;
    if (!result.bytes.isEmpty())
        transfer.meaning = describeStatus(result.bytes);
    reportResult(transfer, result.error);
    if (result.error == 0) {
        if (readIsCurrent)
            block = result.bytes;
        pause = 0ms;
        if (condition.read == ENODEV) {
            reportResult({Transfer::Event, 0, 0, {}, "back"}, 0);
            condition.write = 0;
        }
        condition.read = 0;
        return;
    }
    block.clear();
    readWanted = false;
    pause = std::clamp(2 * pause, shortestPause, longestPause);
    readPause.setRemainingTime(pause);
    if (result.error == ENODEV)
        disconnect();
    else if (condition.read != ENODEV) // Only a successful read ends a disconnection.
        condition.read = result.error;
}

void TransferQueue::State::disconnect()
{
    if (condition.read != ENODEV)
        reportResult({Transfer::Event, 0, 0, {}, "disconnected"}, ENODEV);
    condition.read = ENODEV;
    block.clear();
    for (const QByteArray &command : waitingCommands)
        report(commandRecord(command), Transfer::Failed, ENODEV);
    waitingCommands.clear();
}

void TransferQueue::State::enqueue(const QByteArray &command)
{
    // A block that was read before this command may be out of date.
    block.clear();
    readIsCurrent = false;
    if (!hasCommands() && !readInFlight) {
        commandInFlight = command;
    } else {
        const auto old = std::find_if(
            waitingCommands.begin(), waitingCommands.end(),
            [&](const QByteArray &other) { return fieldOf(other) == fieldOf(command); });
        if (old != waitingCommands.end()) {
            report(commandRecord(*old), Transfer::Superseded);
            waitingCommands.erase(old);
        }
        waitingCommands.push_back(command);
    }
    changed.notify_all();
}

TransferQueue::TransferQueue(std::shared_ptr<Camera> camera, Access access)
    : m_state(std::make_shared<State>(std::move(camera), this))
    , m_thread([state = m_state] { state->run(); })
    , m_access(access)
{
}

TransferQueue::~TransferQueue()
{
    finish();
}

void TransferQueue::sendCommand(const QByteArray &command)
{
    std::unique_lock<std::mutex> lock(m_state->mutex);
    if (m_access == ReadOnly || m_state->finishing)
        m_state->report(commandRecord(command), Transfer::NotSent);
    else if (m_state->condition.read == ENODEV)
        m_state->report(commandRecord(command), Transfer::Failed, ENODEV);
    else
        m_state->enqueue(command);
    lock.unlock();
    deliver();
}

QByteArray TransferQueue::readStatus()
{
    QByteArray answer;
    State &state = *m_state;
    std::unique_lock<std::mutex> lock(state.mutex);
    // A read that began before the last command may return the old setting.
    const bool join = state.readInFlight && state.readIsCurrent;
    if (state.finishing || (!join && !state.readPause.hasExpired())) {
        state.report(readRecord(), Transfer::NotSent);
    } else {
        state.readWanted = !join;
        state.changed.notify_all();
        state.changed.wait_for(lock, m_firstRead ? firstAnswerTime : answerTime,
                               [&] { return !state.readWanted && !state.readInFlight; });
        answer = state.block;
    }
    lock.unlock();
    m_firstRead = false;
    deliver();
    return answer;
}

void TransferQueue::finish()
{
    if (!m_thread.joinable())
        return;
    State &state = *m_state;
    std::unique_lock<std::mutex> lock(state.mutex);
    state.finishing = true;
    state.changed.notify_all();
    if (state.changed.wait_for(lock, finishTime, [&] { return !state.hasCommands(); }))
        state.changed.wait_for(lock, lastReadTime, [&] { return !state.readInFlight; });
    const bool abandoned = state.hasCommands() || state.readInFlight;
    state.queue = nullptr;
    if (!state.commandInFlight.isEmpty())
        state.report(commandRecord(state.commandInFlight), Transfer::Failed, ETIMEDOUT);
    for (const QByteArray &command : state.waitingCommands)
        state.report(commandRecord(command), Transfer::NotSent);
    lock.unlock();
    if (abandoned)
        m_thread.detach();
    else
        m_thread.join();
    deliver();
}

void TransferQueue::deliver()
{
    std::unique_lock<std::mutex> lock(m_state->mutex);
    const std::vector<Transfer> records = std::exchange(m_state->records, {});
    const CameraCondition condition = m_state->condition;
    lock.unlock();
    for (const Transfer &transfer : records)
        Q_EMIT transferred(transfer);
    if (!(condition == m_condition)) {
        m_condition = condition;
        Q_EMIT conditionChanged();
    }
}
