#include "transferworker.h"

#include "errornames.h"
#include "trackingprotocol.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cerrno>

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds shortestPause = 500ms;
constexpr std::chrono::milliseconds longestPause = 5s;

QString resultWord(int error)
{
    return error == 0 ? QStringLiteral("ok") : errorName(error);
}

Transfer record(const QString &direction, int selector)
{
    Transfer transfer;
    transfer.time = QDateTime::currentDateTime();
    transfer.direction = direction;
    transfer.request = selector == 0 ? QString() : QStringLiteral("Extension");
    transfer.selector = selector;
    return transfer;
}

} // namespace

Transfer TransferWorker::commandRecord(const QByteArray &command, const QString &result)
{
    Transfer transfer = record(QStringLiteral("set"), TrackingProtocol::commandSelector);
    transfer.bytes = command;
    transfer.result = result;
    return transfer;
}

Transfer TransferWorker::readRecord(const QString &result)
{
    Transfer transfer = record(QStringLiteral("get"), TrackingProtocol::statusSelector);
    transfer.result = result;
    return transfer;
}

void TransferWorker::add(const Transfer &transfer)
{
    records.push_back(transfer);
    if (records.size() == 1 && announce)
        announce();
}

void TransferWorker::addCommand(const QByteArray &command, const QString &result)
{
    add(commandRecord(command, result));
}

void TransferWorker::addEvent(const QString &meaning, int error)
{
    Transfer transfer = record(QStringLiteral("event"), 0);
    transfer.meaning = meaning;
    transfer.result = resultWord(error);
    add(transfer);
}

void TransferWorker::run()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (!abandoned) {
        if (!commands.empty()) {
            transferCommand(lock);
        } else if (finishing) {
            ended = true;
        } else if (readWanted) {
            transferStatus(lock);
        } else {
            work.wait(lock);
            continue;
        }
        progress.notify_all();
        if (ended)
            return;
    }
}

void TransferWorker::transferCommand(std::unique_lock<std::mutex> &lock)
{
    commandUnderWay = commands.front().bytes;
    commands.pop_front();
    Transfer transfer = commandRecord(commandUnderWay);

    lock.unlock();
    QElapsedTimer timer;
    timer.start();
    const int error = camera->write(TrackingProtocol::commandSelector, transfer.bytes).error;
    transfer.duration = timer.elapsed();
    lock.lock();

    commandUnderWay.clear();
    if (abandoned)
        return;
    transfer.result = resultWord(error);
    condition.write = error;
    add(transfer);
    if (error == ENODEV)
        noteDisconnected();
}

void TransferWorker::transferStatus(std::unique_lock<std::mutex> &lock)
{
    readWanted = false;
    readUnderWay = true;
    ++readsBegun;
    readAfter = commandCount;
    Transfer transfer = readRecord();

    lock.unlock();
    QElapsedTimer timer;
    timer.start();
    const TransferResult result = camera->read(TrackingProtocol::statusSelector);
    transfer.duration = timer.elapsed();
    lock.lock();

    readUnderWay = false;
    ++readsEnded;
    if (abandoned)
        return;
    transfer.result = resultWord(result.error);
    transfer.bytes = result.bytes;
    add(transfer);
    if (result.error == 0) {
        block = result.bytes;
        blockAfter = readAfter;
        pause = 0ms;
        nextRead = {};
        if (condition.read == ENODEV) {
            addEvent(QStringLiteral("back"), 0);
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
        noteDisconnected();
    else if (condition.read != ENODEV) // until it answers again
        condition.read = result.error;
}

void TransferWorker::noteDisconnected()
{
    if (condition.read != ENODEV)
        addEvent(QStringLiteral("disconnected"), ENODEV);
    condition.read = ENODEV;
    block.clear();
    for (const Command &command : commands)
        addCommand(command.bytes, errorName(ENODEV));
    commands.clear();
}
