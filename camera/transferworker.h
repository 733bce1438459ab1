#pragma once

#include "camera.h"
#include "transfer.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

/// How a camera did when it was last asked and told.
struct CameraCondition
{
    static constexpr int unknown = -1;

    int read = unknown; ///< errno of the last status read; 0: it answered; ENODEV: disconnected
    int write = 0;      ///< errno of the last command; 0 also before there is one

    bool operator==(const CameraCondition &other) const
    {
        return read == other.read && write == other.write;
    }
};

/// What a TransferQueue and its thread have in common. It lives as long as either: the thread may
/// hang in a transfer when the queue goes.
struct TransferWorker
{
    using Clock = std::chrono::steady_clock;

    struct Command
    {
        QByteArray bytes;
        bool next; ///< nothing was under way when it came: nothing takes its turn
    };

    std::shared_ptr<Camera> camera;

    std::mutex mutex; ///< guards what follows
    std::condition_variable work;
    std::condition_variable progress;
    std::function<void()> announce; ///< called when there are records; null when the queue is gone

    std::deque<Command> commands; ///< those that wait
    QByteArray commandUnderWay;
    quint64 commandCount = 0; ///< all that ever came
    bool readWanted = false;
    bool readUnderWay = false;
    quint64 readsBegun = 0;
    quint64 readsEnded = 0;
    quint64 readAfter = 0;  ///< commandCount when the last read began
    QByteArray block;       ///< the newest that was read; none if the last read failed
    quint64 blockAfter = 0; ///< commandCount when its reading began
    bool finishing = false;
    bool abandoned = false; ///< nobody wants to know how the transfer ends that is under way
    bool ended = false;     ///< the thread is done
    Clock::time_point nextRead;
    std::chrono::milliseconds pause{0};
    CameraCondition condition;
    std::vector<Transfer> records; ///< that are still to be delivered

    /// Transfers until it is to finish: what the thread does. All else is for holders of the mutex.
    void run();

    bool idle() const { return !readUnderWay && commandUnderWay.isEmpty() && commands.empty(); }

    /// The block, if it tells of the camera as the last command left it.
    QByteArray currentBlock() const { return blockAfter == commandCount ? block : QByteArray(); }

    void add(const Transfer &transfer);
    void addCommand(const QByteArray &command, const QString &result);

    /// A record of a transfer that begins now.
    static Transfer commandRecord(const QByteArray &command, const QString &result = {});
    static Transfer readRecord(const QString &result = {});

private:
    void transferCommand(std::unique_lock<std::mutex> &lock);
    void transferStatus(std::unique_lock<std::mutex> &lock);
    void addEvent(const QString &meaning, int error);
    void noteDisconnected();
};
