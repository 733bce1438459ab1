#include "transferqueue.h"

#include "orvpluginapi.h"
#include "transferstate.h"

#include <cerrno>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto answerTime = 20ms;
constexpr auto firstAnswerTime = 250ms;
constexpr auto finishTime = 2s;
/// Grace period for a read in flight, after all commands have been sent.
constexpr auto lastReadTime = 100ms;

} // namespace

TransferQueue::TransferQueue(std::shared_ptr<Camera> camera, Camera::Access access)
    : m_cameraName(camera->name())
    , m_state(std::make_shared<State>(std::move(camera), this))
{
    m_state->condition.readOnly = access == Camera::ReadOnly;
    m_thread = std::thread([state = m_state] { state->run(); });
}

TransferQueue::~TransferQueue()
{
    finish();
}

CameraCondition TransferQueue::condition() const
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    CameraCondition condition = m_state->condition;
    const bool isAboutToBegin = m_state->current && !condition.running.isValid();
    condition.waiting = int(m_state->waitingCommands.size()) + (isAboutToBegin ? 1 : 0);
    return condition;
}

void TransferQueue::sendCommand(const QByteArray &command)
{
    const Transfer transfer = {Transfer::Set, ChannelRequest::Extension,
                               TrackingProtocol::commandSelector, command,
                               TrackingProtocol::describeCommand(command)};
    State &state = *m_state;
    std::unique_lock<std::mutex> lock(state.mutex);
    if (state.condition.readOnly || state.finishing)
        state.report(transfer, Transfer::NotSent);
    else if (state.isRefused())
        state.reportResult(transfer, state.condition.refusal.error);
    else
        state.enqueue(transfer);
    lock.unlock();
    deliver();
}

void TransferQueue::prefetchStatus()
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    if (m_state->isRefused())
        return;
    m_state->condition.failedCommands.clear();
    m_state->prefetched = true;
    m_state->readWanted = true;
    m_state->changed.notify_all();
}

QByteArray TransferQueue::readStatus()
{
    QByteArray answer;
    State &state = *m_state;
    std::unique_lock<std::mutex> lock(state.mutex);
    // A read that began before the last command may return the old setting.
    const bool join =
        (state.isReading() && state.readIsCurrent) || std::exchange(state.prefetched, false);
    if (state.finishing || state.isRefused() || (!join && !state.readPause.hasExpired())) {
        state.report(State::readRecord(), Transfer::NotSent);
    } else {
        state.readWanted |= !join;
        state.changed.notify_all();
        state.changed.wait_for(lock, m_firstRead ? firstAnswerTime : answerTime,
                               [&] { return !state.readWanted && !state.isReading(); });
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
        state.changed.wait_for(lock, lastReadTime,
                               [&] { return !state.current && !state.opening; });
    state.queue = nullptr;
    const bool abandoned = state.current || state.opening;
    if (state.condition.running.isValid()) {
        state.current->duration = state.condition.running.elapsed();
        state.report(*state.current, Transfer::Failed, ETIMEDOUT);
    } else if (state.current) {
        state.report(*state.current, Transfer::NotSent);
    }
    for (const Transfer &command : state.waitingCommands)
        state.report(command, Transfer::NotSent);
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
    lock.unlock();
    for (const Transfer &transfer : records)
        Q_EMIT transferred(transfer);
    Q_EMIT conditionChanged();
}
