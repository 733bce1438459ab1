#include "testmain.h"
#include "trackingprotocol.h"
#include "transferqueue.h"
#include "transfertext.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <atomic>
#include <cerrno>
#include <limits>
#include <thread>

constexpr int unlimited = std::numeric_limits<int>::max();

/// A camera whose transfers end when the test allows it.
struct HeldCamera : Camera
{
    TransferResult readStatus() override
    {
        const QByteArray block(TrackingProtocol::blockLength, char(state));
        const int failure = sendCommand({});
        return {failure ? QByteArray() : block, failure};
    }
    int sendCommand(const QByteArray & /*command*/) override
    {
        pause = sinceLast.isValid() ? int(sinceLast.elapsed()) : 0;
        const int number = ++begun;
        while (number > allowed)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        sinceLast.start();
        return error;
    }

    std::atomic<int> state{1}; ///< value of the blocks' bytes
    std::atomic<int> error{0};
    std::atomic<int> begun{0};           ///< number of transfers
    std::atomic<int> allowed{unlimited}; ///< number of transfers that may end
    std::atomic<int> pause{0};           ///< ms between the last two transfers
    QElapsedTimer sinceLast;
};

/// A queue with a held camera. Records what the queue reports.
struct HeldQueue
{
    explicit HeldQueue(TransferQueue::Access access = TransferQueue::ReadWrite)
        : queue(camera, access)
    {
        QObject::connect(&queue, &TransferQueue::transferred, &queue, [this](const Transfer &did) {
            const QString content = did.isStatusRead() ? did.bytes.left(1).toHex() : did.meaning;
            said << QStringList({directionText(did), content, resultText(did)}).join(' ');
        });
    }
    ~HeldQueue() { camera->allowed = unlimited; }

    void send(int setting, int value)
    {
        queue.sendCommand(QByteArray("\xFF\x53\x05") + char(setting) + '\1' +
                          QByteArray(55, char(value)));
    }
    /// Returns the value of the block's bytes; 0: no answer.
    int read() { return queue.readStatus().leftJustified(1, '\0').at(0); }

    void hold() { camera->allowed = camera->begun.load(); }
    /// Lets one transfer end and waits for the next to begin.
    bool step()
    {
        const int before = camera->begun;
        ++camera->allowed;
        return QTest::qWaitFor([&] { return camera->begun > before; });
    }
    void release(int error = 0)
    {
        camera->error = error;
        camera->allowed = unlimited;
    }

    std::shared_ptr<HeldCamera> camera = std::make_shared<HeldCamera>();
    QStringList said; // outlives the queue, which still reports in its destructor
    TransferQueue queue;
};

class TestQueue : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void newestOfEachSetting()
    {
        HeldQueue held;
        held.hold(); // The first command is not replaced, because the queue is idle.
        for (const auto &[setting, value] :
             {std::pair(0x10, 0), {0x10, 1}, {0x07, 1}, {0x10, 2}, {0x04, 0}, {0x07, 2}})
            held.send(setting, value);
        QCOMPARE(held.said.join(", "), "set Type: Hand superseded, set Mode: Standard superseded");
        held.release();
        QTRY_COMPARE(held.said.mid(2).join(", "), "set Type: Basic ok, set Type: Board ok, "
                                                  "set Tracking: off ok, set Mode: Sport ok");
        held.hold();
        held.read();
        held.send(0x10, 0); // waits for the read
        held.send(0x10, 1);
        held.release();
        QTRY_COMPARE(held.said.mid(6).join(", "),
                     "set Type: Basic superseded, get 01 ok, set Type: Hand ok");
    }

    void answers()
    {
        HeldQueue held;
        held.hold();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(held.read(), 0);
        QVERIFY(timer.restart() >= 249); // the first read waits longer
        QCOMPARE(held.read(), 0);
        QVERIFY(timer.elapsed() >= 19);
        ++held.camera->allowed;
        QTRY_COMPARE(held.said.size(), 1);
        held.camera->state = 2;
        QCOMPARE(held.read(), 1); // the newest block while the next read is in flight
        QCOMPARE(held.read(), 1); // joins that read
        ++held.camera->allowed;
        QTRY_COMPARE(held.said.size(), 2);
        held.send(0x10, 1);
        QTRY_COMPARE(held.camera->begun, 3);
        QCOMPARE(held.read(), 0); // every block is older than the command
        held.camera->state = 3;
        QVERIFY(held.step());
        held.send(0x10, 2);
        QCOMPARE(held.read(), 0); // does not join the read that began before this command
        QVERIFY(held.step());
        QCOMPARE(held.read(), 0); // does not return its block either
        held.camera->state = 4;
        QVERIFY(held.step());
        ++held.camera->allowed;
        QTRY_COMPARE(held.said.join(", "), "get 01 ok, get 02 ok, set Type: Hand ok, get 03 ok, "
                                           "set Type: Board ok, get 04 ok");
        QCOMPARE(held.read(), 4);
    }

    void failingIsReadLessOften()
    {
        HeldQueue held;
        QCOMPARE(held.read(), 1);
        held.camera->error = EIO;
        held.camera->allowed = 3;
        while (held.camera->begun < 4) {
            QCOMPARE(held.read(), 0); // also while the fourth read is in flight
            QTest::qWait(5);
        }
        QVERIFY(held.camera->pause >= 999); // the first pause is 0.5 s, the second 1 s
        QVERIFY(held.said.contains("get  not sent"));
        QCOMPARE(held.queue.condition().read, EIO);
        held.release(EIO);
        QTRY_COMPARE(held.said.count("get  EIO"), 3);
        held.release();
        held.send(0x10, 1); // does not wait for the next read
        QTRY_COMPARE(held.said.last(), "set Type: Hand ok");
        QTRY_COMPARE(held.read(), 1);
        QTRY_VERIFY(held.read() && held.camera->pause < 400);
        QCOMPARE(held.queue.condition().read, 0);
    }

    void disconnected()
    {
        HeldQueue held;
        QSignalSpy conditions(&held.queue, &TransferQueue::conditionChanged);
        held.hold();
        held.send(0x10, 1);
        held.send(0x07, 2); // waits, and fails with the first one
        held.release(ENODEV);
        QTRY_COMPARE(held.said.join(", "), "set Type: Hand ENODEV, event disconnected ENODEV, "
                                           "set Mode: Sport ENODEV");
        held.send(0x04, 1);
        QCOMPARE(held.said.last(), "set Tracking: on ENODEV");
        QCOMPARE(held.camera->begun, 1);
        held.camera->error = EIO; // back, but not usable yet
        QCOMPARE(held.read(), 0);
        QTRY_COMPARE(held.said.last(), "get  EIO");
        QCOMPARE(held.queue.condition().read, ENODEV);
        QCOMPARE(conditions.size(), 1);
        held.release();
        QTRY_VERIFY(held.read() != 0);
        QCOMPARE(held.said.filter("event").join(", "), "event disconnected ENODEV, event back ok");
        QCOMPARE(held.queue.condition().write, 0); // the failed command is forgotten
        held.send(0x04, 0);
        QTRY_COMPARE(held.said.last(), "set Tracking: off ok");
    }

    void readOnly()
    {
        HeldQueue held(TransferQueue::ReadOnly);
        held.send(0x10, 1);
        QCOMPARE(held.read(), 1);
        QCOMPARE(held.said.join(", "), "set Type: Hand not sent, get 01 ok");
    }

    void finish()
    {
        const std::pair<const char *, const char *> rows[] = {
            {"nothing", "set Mode: Standard ok, set Tracking: on ok"},
            {"held command",
             "set Type: Hand ETIMEDOUT, set Mode: Standard not sent, set Tracking: on not sent"},
            {"held read", ""},
            {"read that ends", "get 01 ok"},
        };
        for (const auto &[inFlight, said] : rows) {
            const QString state(inFlight);
            HeldQueue held;
            held.read(); // the first read, which waits longer
            held.said.clear();
            if (state != "nothing")
                held.hold();
            if (state.contains("command"))
                held.send(0x10, 1);
            if (state.contains("read"))
                held.read();
            else
                for (const int setting : {0x07, 0x04})
                    held.send(setting, 1);
            if (state.contains("ends"))
                held.release();
            held.queue.finish();
            QCOMPARE(held.said.join(", "), QString(said));

            // The end of an abandoned transfer is not reported, and no other transfer begins.
            const int begun = held.camera->begun;
            held.said.clear();
            held.release();
            QTest::qWait(50);
            held.send(0x10, 2);
            QCOMPARE(held.read(), 0);
            QCOMPARE(held.said.join(", "), "set Type: Board not sent, get  not sent");
            QCOMPARE(held.camera->begun, begun);
        }
    }
};

TEST_MAIN(TestQueue)
#include "tst_queue.moc"
