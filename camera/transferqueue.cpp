#include "transferqueue.h"

#include "errornames.h"
#include "trackingprotocol.h"

#include <algorithm>
#include <cerrno>

namespace {

using namespace std::chrono_literals;

constexpr auto answerTime = 20ms;
constexpr auto firstAnswerTime = 250ms;
constexpr auto finishTime = 2s;
/// What a read that is under way gets to end by itself when nothing waits to be sent.
constexpr auto lastReadTime = 100ms;

} // namespace

TransferQueue::TransferQueue(std::shared_ptr<Camera> camera, Access access)
    : m_worker(std::make_shared<TransferWorker>())
    , m_access(access)
{
    m_worker->camera = std::move(camera);
    m_worker->announce = [this] {
        QMetaObject::invokeMethod(this, &TransferQueue::deliver, Qt::QueuedConnection);
    };
    m_thread = std::thread([worker = m_worker] { worker->run(); });
}

TransferQueue::~TransferQueue()
{
    finish();
}

void TransferQueue::sendCommand(const QByteArray &command)
{
    {
        const std::lock_guard<std::mutex> lock(m_worker->mutex);
        TransferWorker &worker = *m_worker;
        if (m_access == ReadOnly || worker.finishing) {
            worker.addCommand(command, QStringLiteral("not sent"));
        } else if (worker.condition.read == ENODEV) {
            worker.addCommand(command, errorName(ENODEV));
        } else {
            const auto sameSetting = [&](const TransferWorker::Command &waiting) {
                return !waiting.next && waiting.bytes.mid(TrackingProtocol::commandOffset, 1) ==
                                            command.mid(TrackingProtocol::commandOffset, 1);
            };
            auto &commands = worker.commands;
            const auto old = std::find_if(commands.begin(), commands.end(), sameSetting);
            if (old != commands.end()) {
                worker.addCommand(old->bytes, QStringLiteral("superseded"));
                commands.erase(old);
            }
            commands.push_back({command, worker.idle()});
            ++worker.commandCount;
            worker.work.notify_one();
        }
    }
    deliver();
}

QByteArray TransferQueue::readStatus()
{
    QByteArray answer;
    {
        std::unique_lock<std::mutex> lock(m_worker->mutex);
        TransferWorker &worker = *m_worker;
        // One that began before a command came would tell of the camera as it was.
        const bool join = worker.readUnderWay && worker.readAfter == worker.commandCount;
        if (worker.finishing || (!join && TransferWorker::Clock::now() < worker.nextRead)) {
            worker.add(TransferWorker::readRecord(QStringLiteral("not sent")));
        } else {
            worker.readWanted |= !join;
            worker.work.notify_one();
            const quint64 wanted = worker.readsBegun + (join ? 0 : 1);
            worker.progress.wait_for(lock, m_asked ? answerTime : firstAnswerTime,
                                     [&] { return worker.readsEnded >= wanted; });
            answer = worker.currentBlock();
        }
        m_asked = true;
    }
    deliver();
    return answer;
}

void TransferQueue::finish()
{
    if (!m_thread.joinable())
        return;
    {
        std::unique_lock<std::mutex> lock(m_worker->mutex);
        TransferWorker &worker = *m_worker;
        worker.finishing = true;
        worker.work.notify_one();
        const bool sent = worker.progress.wait_for(lock, finishTime, [&] {
            return worker.commands.empty() && worker.commandUnderWay.isEmpty();
        });
        if (sent)
            worker.progress.wait_for(lock, lastReadTime, [&] { return worker.ended; });
        worker.abandoned = !worker.ended;
        worker.announce = nullptr;
        if (!worker.commandUnderWay.isEmpty())
            worker.addCommand(worker.commandUnderWay, errorName(ETIMEDOUT));
        for (const TransferWorker::Command &command : worker.commands)
            worker.addCommand(command.bytes, QStringLiteral("not sent"));
        worker.commands.clear();
        if (worker.abandoned)
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
        const std::lock_guard<std::mutex> lock(m_worker->mutex);
        records.swap(m_worker->records);
        condition = m_worker->condition;
    }
    for (const Transfer &transfer : records)
        Q_EMIT transferred(transfer);
    if (!(condition == m_condition)) {
        m_condition = condition;
        Q_EMIT conditionChanged();
    }
}
