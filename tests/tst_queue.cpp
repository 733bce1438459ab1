#include "testmain.h"
#include "transferqueue.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <atomic>
#include <cerrno>
#include <limits>
#include <thread>

constexpr int always = std::numeric_limits<int>::max();

/// A camera whose transfers take as long as the test says. A status block is the number of its
/// transfer.
struct HeldCamera : Camera
{
    TransferResult read(int /*selector*/) override
    {
        const QByteArray block(60, char(++begun));
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < held)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return {block, error};
    }
    TransferResult write(int selector, const QByteArray &bytes) override
    {
        written += bytes.mid(3, 3).toHex() + ' ';
        return read(selector);
    }

    std::atomic<int> held{0}, error{0}, begun{0}; ///< held: ms, at least
    QByteArray written;                           ///< complete when the queue has said so
};

/// A queue with such a camera, and what it reported.
struct HeldQueue
{
    explicit HeldQueue(TransferQueue::Access access = TransferQueue::ReadWrite)
        : queue(camera, access)
    {
        QObject::connect(&queue, &TransferQueue::transferred, &queue, [this](const Transfer &did) {
            const QString what = did.meaning + did.firstBytes().mid(9);
            said << QStringList({did.direction, what, did.result}).join(' ');
        });
        timer.start();
    }
    ~HeldQueue() { release(); }

    void send(int setting, int value)
    {
        queue.sendCommand(QByteArray(3, 0) + char(setting) + '\1' + QByteArray(55, char(value)));
    }
    /// Sends a command that the camera keeps until it is released.
    void sendHeld(int setting, int value)
    {
        const int before = camera->begun;
        camera->held = always;
        send(setting, value);
        if (!QTest::qWaitFor([&] { return camera->begun > before; }))
            qFatal("The camera was not asked.");
    }
    void release(int error = 0)
    {
        camera->error = error;
        camera->held = 0;
    }
    /// The number of the block; 0: no answer.
    int read() { return queue.readStatus().leftJustified(1, '\0').at(0); }

    std::shared_ptr<HeldCamera> camera = std::make_shared<HeldCamera>();
    QStringList said; // before the queue, which reports to its very end
    TransferQueue queue;
    QElapsedTimer timer;
};

class TestQueue : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void newestOfEachSetting()
    {
        HeldQueue held;
        held.camera->held = always; // the first goes out in any case
        for (const auto &[setting, value] :
             {std::pair(0x10, 0), {0x10, 1}, {0x07, 1}, {0x10, 2}, {0x04, 0}, {0x07, 2}})
            held.send(setting, value);
        QCOMPARE(held.said.join(", "), "set 10 01 01 superseded, set 07 01 01 superseded");
        held.release();
        QTRY_COMPARE(held.said.mid(2).join(", "),
                     "set 10 01 00 ok, set 10 01 02 ok, set 04 01 00 ok, set 07 01 02 ok");
        QCOMPARE(held.camera->written, QByteArray("100100 100102 040100 070102 "));
    }

    void answers()
    {
        HeldQueue held;
        QCOMPARE(held.read(), 1);
        held.camera->held = always;
        held.timer.start();
        QCOMPARE(held.read(), 1); // the newest, while the next is under way
        QVERIFY(held.timer.elapsed() < 200);
        QCOMPARE(held.read(), 1);
        QCOMPARE(held.camera->begun, 2); // both waited for the same
        held.send(0x10, 1);
        QCOMPARE(held.read(), 0); // all that was read is older than the command
        held.release();
        // Then the command, and the read that was wanted.
        QTRY_COMPARE(held.said.join(", "),
                     "get 01 01 01 ok, get 02 02 02 ok, set 10 01 01 ok, get 04 04 04 ok");
        held.camera->held = always;
        QCOMPARE(held.read(), 4);
        held.release();
        QTRY_COMPARE(held.said.size(), 5);
        held.sendHeld(0x10, 2);
        QCOMPARE(held.read(), 0); // the command is not through
    }

    void failingIsAskedLess()
    {
        HeldQueue held;
        QCOMPARE(held.read(), 1);
        held.release(EIO);
        // Half a second, then a second.
        for (held.timer.start(); held.timer.elapsed() < 1300; QTest::qWait(20))
            QCOMPARE(held.read(), 0);
        QCOMPARE(held.camera->begun, 3);
        QCOMPARE(held.queue.condition().read, EIO);
        QVERIFY(held.said.contains("get  not sent"));
        held.release();
        QTRY_VERIFY(held.read() != 0);
        const int before = held.camera->begun;
        held.read();
        held.read();
        QCOMPARE(held.camera->begun, before + 2);
        QCOMPARE(held.queue.condition().read, 0);
    }

    void disconnected()
    {
        HeldQueue held;
        QSignalSpy conditions(&held.queue, &TransferQueue::conditionChanged);
        held.sendHeld(0x10, 1);
        held.send(0x07, 2); // waits, and goes with the camera
        held.release(ENODEV);
        QTRY_COMPARE(held.said.join(", "),
                     "set 10 01 01 ENODEV, event disconnected ENODEV, set 07 01 02 ENODEV");
        held.send(0x04, 1);
        QCOMPARE(held.said.last(), "set 04 01 01 ENODEV");
        QCOMPARE(held.read(), 0);
        QCOMPARE(conditions.size(), 1);
        held.release();
        QTRY_VERIFY(held.read() != 0);
        QCOMPARE(held.said.count("event back ok"), 1);
        QCOMPARE(conditions.size(), 2);
        QCOMPARE(held.queue.condition().write, 0); // whatever failed before
        held.send(0x04, 0);
        QTRY_COMPARE(held.said.count("set 04 01 00 ok"), 1);
    }

    void readOnly()
    {
        HeldQueue held(TransferQueue::ReadOnly);
        held.send(0x10, 1);
        QCOMPARE(held.read(), 1);
        QCOMPARE(held.said.join(", "), "set 10 01 01 not sent, get 01 01 01 ok");
    }

    void finish_data()
    {
        QTest::addColumn<int>("held");
        QTest::addColumn<QString>("said");
        QTest::addColumn<int>("longest"); // ms
        QTest::newRow("nothing") << 0 << "set 07 01 01 ok, set 04 01 01 ok" << 1000;
        QTest::newRow("a command that hangs")
            << always << "set 10 01 01 ETIMEDOUT, set 07 01 01 not sent, set 04 01 01 not sent"
            << 2500;
        QTest::newRow("a read that hangs") << always << "" << 1000;
        QTest::newRow("a read that ends") << 30 << "get 02 02 02 ok" << 1000;
    }

    void finish()
    {
        const QString underWay(QTest::currentDataTag());
        QFETCH(int, held);
        HeldQueue queue;
        queue.read(); // the first, which may take longer
        queue.said.clear();
        if (underWay.contains("command"))
            queue.sendHeld(0x10, 1);
        queue.camera->held = held;
        if (underWay.contains("read")) {
            queue.read();
        } else {
            queue.send(0x07, 1);
            queue.send(0x04, 1);
        }
        queue.timer.start();
        queue.queue.finish();
        const qint64 took = queue.timer.elapsed();
        QTEST(queue.said.join(", "), "said");
        QFETCH(int, longest);
        QVERIFY2(took < longest, qPrintable(QString::number(took)));
        // What hangs goes on for nobody, and sends nothing any more.
        const int begun = queue.camera->begun;
        queue.release();
        QTest::qWait(50);
        queue.said.clear();
        queue.send(0x10, 2);
        QCOMPARE(queue.said.join(", "), "set 10 01 02 not sent");
        QCOMPARE(queue.camera->begun, begun);
    }
};

TEST_MAIN(TestQueue)
#include "tst_queue.moc"
