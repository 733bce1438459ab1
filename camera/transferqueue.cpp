#include "transferqueue.h"

#include "orvpluginapi.h"
#include "trackingprotocol.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <vector>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto answerTime = 20ms;
constexpr auto firstAnswerTime = 250ms;
constexpr auto finishTime = 2s;
/// Grace period for a read in flight when no command waits.
constexpr auto lastReadTime = 100ms;
constexpr std::chrono::milliseconds shortestPause = 500ms;
constexpr std::chrono::milliseconds longestPause = 5s;

Transfer commandRecord(const QByteArray &command)
{
    Transfer transfer = Transfer::begin(Transfer::Set, ChannelRequest::Extension,
                                        TrackingProtocol::commandSelector);
    transfer.bytes = command;
    transfer.meaning = TrackingProtocol::describeCommand(command);
    return transfer;
}

Transfer readRecord()
{
    Transfer transfer =
        Transfer::begin(Transfer::Get, ChannelRequest::Extension, TrackingProtocol::statusSelector);
    transfer.meaning = "no answer";
    return transfer;
}

char settingOf(const QByteArray &command)
{
    return command.at(TrackingProtocol::commandOffset);
}

} // namespace

/// What the queue shares with its thread.
struct TransferQueue::State
{
    const std::shared_ptr<Camera> camera;

    std::mutex mutex; ///< guards all below
    std::condition_variable changed;
    TransferQueue *queue; ///< null: the queue has finished

    QByteArray commandInFlight; ///< being sent, or about to be
    std::deque<QByteArray> waitingCommands;
    bool readWanted = false;
    bool readInFlight = false;
    bool readIsCurrent = false; ///< no command came since the last read began
    QByteArray block;           ///< the newest block; empty if a command or a failure came later
    Clock::time_point nextRead;
    std::chrono::milliseconds pause{0};
    CameraCondition condition;
    std::vector<Transfer> records; ///< not yet delivered
    bool finishing = false;
    bool ended = false;     ///< the thread does nothing more
    bool abandoned = false; ///< the result of the transfer in flight does not matter

    State(std::shared_ptr<Camera> itsCamera, TransferQueue *itsQueue)
        : camera(std::move(itsCamera))
        , queue(itsQueue)
    {
    }

    bool hasCommands() const { return !commandInFlight.isEmpty() || !waitingCommands.empty(); }

    void run();
    void transferCommand(std::unique_lock<std::mutex> &lock);
    void transferStatus(std::unique_lock<std::mutex> &lock);
    void enqueue(const QByteArray &command);
    void disconnect();

    void add(Transfer transfer, Transfer::Outcome outcome, int error = 0);
    void addResult(const Transfer &transfer, int error);
    void addEvent(const char *meaning, int error);
};

void TransferQueue::State::add(Transfer transfer, Transfer::Outcome outcome, int error)
{
    transfer.outcome = outcome;
    transfer.error = error;
    records.push_back(transfer);
    if (records.size() == 1 && queue)
        QMetaObject::invokeMethod(queue, &TransferQueue::deliver, Qt::QueuedConnection);
}

void TransferQueue::State::addResult(const Transfer &transfer, int error)
{
    add(transfer, error == 0 ? Transfer::Succeeded : Transfer::Failed, error);
}

void TransferQueue::State::addEvent(const char *meaning, int error)
{
    Transfer transfer = Transfer::begin(Transfer::Event);
    transfer.meaning = meaning;
    addResult(transfer, error);
}

/// Thread loop; runs until told to finish.
void TransferQueue::State::run()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (!ended && !abandoned) {
        if (hasCommands())
            transferCommand(lock);
        else if (finishing)
            ended = true;
        else if (readWanted)
            transferStatus(lock);
        else
            changed.wait(lock);
        changed.notify_all();
    }
}

void TransferQueue::State::transferCommand(std::unique_lock<std::mutex> &lock)
{
    if (commandInFlight.isEmpty()) {
        commandInFlight = waitingCommands.front();
        waitingCommands.pop_front();
    }
    Transfer transfer = commandRecord(commandInFlight);

    lock.unlock();
    QElapsedTimer timer;
    timer.start();
    const int error = camera->sendCommand(transfer.bytes);
    transfer.duration = timer.elapsed();
    lock.lock();

    commandInFlight.clear();
    if (abandoned)
        return;
    condition.write = error;
    addResult(transfer, error);
    if (error == ENODEV)
        disconnect();
}

void TransferQueue::State::transferStatus(std::unique_lock<std::mutex> &lock)
{
    readWanted = false;
    readInFlight = true;
    readIsCurrent = true;
    Transfer transfer = readRecord();

    lock.unlock();
    QElapsedTimer timer;
    timer.start();
    const TransferResult result = camera->readStatus();
    transfer.duration = timer.elapsed();
    lock.lock();

    readInFlight = false;
    if (abandoned)
        return;
    transfer.bytes = result.bytes;
    if (!result.bytes.isEmpty())
        transfer.meaning = TrackingProtocol::describeStatus(result.bytes);
    addResult(transfer, result.error);
    if (result.error == 0) {
        if (readIsCurrent)
            block = result.bytes;
        pause = 0ms;
        nextRead = {};
        if (condition.read == ENODEV) {
            addEvent("back", 0);
            condition.write = 0;
        }
        condition.read = 0;
        return;
    }
    block.clear();
    readWanted = false;
    pause = std::clamp(2 * pause, shortestPause, longestPause);
    nextRead = Clock::now() + pause;
    if (result.error == ENODEV)
        disconnect();
    else if (condition.read != ENODEV) // A disconnected camera stays so until a read succeeds.
        condition.read = result.error;
}

void TransferQueue::State::disconnect()
{
    if (condition.read != ENODEV)
        addEvent("disconnected", ENODEV);
    condition.read = ENODEV;
    block.clear();
    for (const QByteArray &command : waitingCommands)
        add(commandRecord(command), Transfer::Failed, ENODEV);
    waitingCommands.clear();
}

void TransferQueue::State::enqueue(const QByteArray &command)
{
    // Blocks that were read before a command may no longer be true.
    block.clear();
    readIsCurrent = false;
    if (!hasCommands() && !readInFlight) {
        commandInFlight = command;
    } else {
        const auto old = std::find_if(
            waitingCommands.begin(), waitingCommands.end(),
            [&](const QByteArray &other) { return settingOf(other) == settingOf(command); });
        if (old != waitingCommands.end()) {
            add(commandRecord(*old), Transfer::Superseded);
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
    {
        const std::lock_guard<std::mutex> lock(m_state->mutex);
        if (m_access == ReadOnly || m_state->finishing)
            m_state->add(commandRecord(command), Transfer::NotSent);
        else if (m_state->condition.read == ENODEV)
            m_state->add(commandRecord(command), Transfer::Failed, ENODEV);
        else
            m_state->enqueue(command);
    }
    deliver();
}

QByteArray TransferQueue::readStatus()
{
    QByteArray answer;
    {
        std::unique_lock<std::mutex> lock(m_state->mutex);
        State &state = *m_state;
        // A read that began before the last command would show the camera as it was.
        const bool join = state.readInFlight && state.readIsCurrent;
        if (state.finishing || (!join && Clock::now() < state.nextRead)) {
            state.add(readRecord(), Transfer::NotSent);
        } else {
            state.readWanted = !join;
            state.changed.notify_all();
            state.changed.wait_for(lock, m_firstRead ? firstAnswerTime : answerTime,
                                   [&] { return !state.readWanted && !state.readInFlight; });
            answer = state.block;
        }
        m_firstRead = false;
    }
    deliver();
    return answer;
}

void TransferQueue::finish()
{
    if (!m_thread.joinable())
        return;
    {
        std::unique_lock<std::mutex> lock(m_state->mutex);
        State &state = *m_state;
        state.finishing = true;
        state.changed.notify_all();
        if (state.changed.wait_for(lock, finishTime, [&] { return !state.hasCommands(); }))
            state.changed.wait_for(lock, lastReadTime, [&] { return state.ended; });
        state.abandoned = !state.ended;
        state.queue = nullptr;
        if (!state.commandInFlight.isEmpty())
            state.add(commandRecord(state.commandInFlight), Transfer::Failed, ETIMEDOUT);
        for (const QByteArray &command : state.waitingCommands)
            state.add(commandRecord(command), Transfer::NotSent);
        state.waitingCommands.clear();
        if (state.abandoned)
            m_thread.detach();
    }
    if (m_thread.joinable())
        m_thread.join();
    deliver();
}

void TransferQueue::deliver()
{
    std::vector<Transfer> records;
    CameraCondition condition;
    {
        const std::lock_guard<std::mutex> lock(m_state->mutex);
        records.swap(m_state->records);
        condition = m_state->condition;
    }
    for (const Transfer &transfer : records)
        Q_EMIT transferred(transfer);
    if (!(condition == m_condition)) {
        m_condition = condition;
        Q_EMIT conditionChanged();
    }
}
