#pragma once

#include "transferqueue.h"

#include <QDeadlineTimer>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <vector>

/// The state that a queue shares with its thread.
struct TransferQueue::State
{
    const std::shared_ptr<Camera> camera;

    std::mutex mutex; ///< guards the members below
    std::condition_variable changed;
    TransferQueue *queue; ///< null after finish(): the thread reports nothing more

    std::optional<Transfer> current; ///< in flight, or about to be
    std::deque<Transfer> waitingCommands;
    QDeadlineTimer nextLook; ///< when to see whether the camera is there
    bool opening = false;    ///< Camera::open() is under way
    bool readWanted = false;
    bool readIsCurrent = false; ///< no command arrived since the last read began
    bool prefetched = false;    ///< the next request gets the last read
    QByteArray block;           ///< the newest block; empty after a later command or failure
    QDeadlineTimer readPause;   ///< no reads before it expires
    std::chrono::milliseconds pause{0};
    CameraCondition condition;     ///< `waiting` is not up to date
    std::vector<Transfer> records; ///< not yet delivered
    bool finishing = false;        ///< accept nothing more, but send the waiting commands

    State(std::shared_ptr<Camera> itsCamera, TransferQueue *itsQueue)
        : camera(std::move(itsCamera))
        , queue(itsQueue)
    {
    }

    bool isReading() const { return current && current->isStatusRead(); }
    bool hasCommands() const { return (current && !isReading()) || !waitingCommands.empty(); }
    bool isRefused() const { return condition.state == CameraCondition::Refused; }

    void run();
    void openCamera(std::unique_lock<std::mutex> &lock);
    void transfer(std::unique_lock<std::mutex> &lock);
    void begin();
    void endRead(Transfer read, const TransferResult &result);
    void enqueue(const Transfer &command);
    void refuse(const CameraRefusal &refusal);

    void announce();
    void report(Transfer transfer, Transfer::Outcome outcome, int error = 0);
    void reportResult(const Transfer &transfer, int error);

    static Transfer readRecord();
};
