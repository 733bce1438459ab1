#include "testmain.h"
#include "transferqueue.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <cerrno>
#include <condition_variable>
#include <mutex>

/// A camera whose transfers begin and end when the test says so. Its status block is the number of
/// the read.
class HeldCamera : public Camera
{
public:
    void hold()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_held = true;
    }
    void release(int error = 0)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_held = false;
        m_error = error;
        m_released.notify_all();
    }
    int begun() const { return count(m_begun); }
    int reads() const { return count(m_reads); }
    QByteArray written() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_written;
    }

    TransferResult read(int selector) override
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        const QByteArray block(60, char(++m_reads));
        return {block, transfer(lock, selector == 8)};
    }
    TransferResult write(int selector, const QByteArray &bytes) override
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        const int error = transfer(lock, selector == 7);
        m_written += bytes.mid(3, 1).toHex() + '=' + bytes.mid(5, 1).toHex() + ' ';
        return {{}, error};
    }

private:
    int count(const int &member) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return member;
    }
    int transfer(std::unique_lock<std::mutex> &lock, bool rightSelector)
    {
        ++m_begun;
        m_released.wait(lock, [this] { return !m_held; });
        return rightSelector ? m_error : ENOENT;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_released;
    QByteArray m_written;
    bool m_held = false;
    int m_error = 0;
    int m_begun = 0;
    int m_reads = 0;
};

/// A queue with such a camera, and the results that it reported.
struct HeldQueue
{
    explicit HeldQueue(TransferQueue::Access access = TransferQueue::ReadWrite)
        : queue(camera, access)
    {
        QObject::connect(
            &queue, &TransferQueue::transferred, &queue, [this](const Transfer &transfer) {
                results << (transfer.meaning.isEmpty() ? transfer.direction : transfer.meaning) +
                               ' ' + transfer.result;
            });
    }
    ~HeldQueue() { camera->release(); }

    void send(int setting, int value)
    {
        QByteArray command(60, 0);
        command[3] = char(setting);
        command[5] = char(value);
        queue.sendCommand(command);
    }
    /// Sends a command that the camera keeps until it is released.
    void sendHeld(int setting, int value)
    {
        const int before = camera->begun();
        camera->hold();
        send(setting, value);
        if (!QTest::qWaitFor([&] { return camera->begun() == before + 1; }))
            qFatal("The camera was not asked.");
    }
    /// The number of the block; 0: no answer.
    int read() { return queue.readStatus().leftJustified(1, '\0').at(0); }

    std::shared_ptr<HeldCamera> camera = std::make_shared<HeldCamera>();
    QStringList results; // before the queue, which reports to its very end
    TransferQueue queue;
};

class TestQueue : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void newestOfEachSetting();
    void answers();
    void failingIsAskedLess();
    void disconnected();
    void readOnly();
    void finish_data();
    void finish();
};

void TestQueue::newestOfEachSetting()
{
    HeldQueue held;
    held.sendHeld(0x10, 0);
    for (const auto &[setting, value] :
         {std::pair(0x10, 1), {0x07, 1}, {0x10, 2}, {0x04, 0}, {0x07, 2}})
        held.send(setting, value);
    QCOMPARE(held.results, QStringList({"set superseded", "set superseded"}));
    held.camera->release();
    QTRY_COMPARE(held.camera->written(), QByteArray("10=00 10=02 04=00 07=02 "));
    QTRY_COMPARE(held.results.count("set ok"), 4);
}

void TestQueue::answers()
{
    HeldQueue held;
    QCOMPARE(held.read(), 1);
    held.camera->hold();
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(held.read(), 1); // the newest, while the next is under way
    QVERIFY(timer.elapsed() < 200);
    QCOMPARE(held.read(), 1);
    QCOMPARE(held.camera->begun(), 2); // both waited for the same
    held.send(0x10, 1);
    QCOMPARE(held.read(), 0); // all that was read is older than the command
    held.camera->release();
    QTRY_COMPARE(held.camera->begun(), 4); // the read, the command, and the read that was wanted
    QTRY_COMPARE(held.results, QStringList({"get ok", "get ok", "set ok", "get ok"}));
    held.camera->hold();
    QCOMPARE(held.read(), 3);
    held.camera->release();
    QTRY_COMPARE(held.results.size(), 5);
    held.sendHeld(0x10, 2);
    QCOMPARE(held.read(), 0); // the command is not through
}

void TestQueue::failingIsAskedLess()
{
    HeldQueue held;
    QCOMPARE(held.read(), 1);
    held.camera->release(EIO);
    // Half a second, then a second.
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 1300) {
        QCOMPARE(held.read(), 0);
        QTest::qWait(20);
    }
    QCOMPARE(held.camera->reads(), 3);
    QCOMPARE(held.queue.condition().read, EIO);
    QVERIFY(held.results.contains("get not sent"));
    held.camera->release();
    QTRY_VERIFY(held.read() != 0);
    const int before = held.camera->reads();
    held.read();
    held.read();
    QCOMPARE(held.camera->reads(), before + 2);
    QCOMPARE(held.queue.condition().read, 0);
}

void TestQueue::disconnected()
{
    HeldQueue held;
    QSignalSpy conditions(&held.queue, &TransferQueue::conditionChanged);
    held.sendHeld(0x10, 1);
    held.send(0x07, 2); // waits, and goes with the camera
    held.camera->release(ENODEV);
    QTRY_COMPARE(held.results, QStringList({"set ENODEV", "disconnected ENODEV", "set ENODEV"}));
    held.send(0x04, 1);
    QCOMPARE(held.results.takeLast(), QString("set ENODEV"));
    QCOMPARE(held.read(), 0);
    QCOMPARE(conditions.size(), 1);
    held.camera->release();
    QTRY_VERIFY(held.read() != 0);
    QCOMPARE(held.results.count("back ok"), 1);
    QCOMPARE(conditions.size(), 2);
    held.send(0x04, 0);
    QTRY_COMPARE(held.camera->written(), QByteArray("10=01 04=00 "));
}

void TestQueue::readOnly()
{
    HeldQueue held(TransferQueue::ReadOnly);
    held.send(0x10, 1);
    QCOMPARE(held.read(), 1);
    QCOMPARE(held.results, QStringList({"set not sent", "get ok"}));
    QCOMPARE(held.camera->begun(), 1);
}

void TestQueue::finish_data()
{
    QTest::addColumn<QString>("underWay");
    QTest::addColumn<QStringList>("results");
    QTest::addColumn<int>("longest"); // ms

    QTest::newRow("nothing") << "" << QStringList({"set ok", "set ok"}) << 1000;
    QTest::newRow("a command that hangs")
        << "set" << QStringList({"set ETIMEDOUT", "set not sent", "set not sent"}) << 2500;
    QTest::newRow("a read that hangs") << "get" << QStringList() << 1000;
}

void TestQueue::finish()
{
    QFETCH(QString, underWay);
    HeldQueue held;
    if (underWay == "get") {
        held.camera->hold();
        held.read();
    } else {
        if (underWay == "set")
            held.sendHeld(0x10, 1);
        held.send(0x07, 1);
        held.send(0x04, 1);
    }
    QElapsedTimer timer;
    timer.start();
    held.queue.finish();
    QTEST(held.results, "results");
    QFETCH(int, longest);
    QVERIFY2(timer.elapsed() < longest, qPrintable(QString::number(timer.elapsed())));
    // What hangs goes on for nobody, and sends nothing any more.
    const QByteArray written = held.camera->written();
    held.camera->release();
    QTest::qWait(50);
    QCOMPARE(held.camera->written(), written + (underWay == "set" ? "10=01 " : ""));
    held.send(0x10, 2);
    QCOMPARE(held.results.takeLast(), QString("set not sent"));
}

TEST_MAIN(TestQueue)
#include "tst_queue.moc"
