#include "statusline.h"
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
    explicit HeldCamera(int itsAllowed)
        : allowed(itsAllowed)
    {
    }
    QString name() const override { return "held"; }
    CameraRefusal open() override
    {
        ++opened;
        while (allowed < 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const int why = refusal;
        return {why == ENODEV ? CameraRefusal::Disconnected : CameraRefusal::CannotOpen, why,
                name()};
    }
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
    std::atomic<int> refusal{0}; ///< errno of open()
    std::atomic<int> opened{0};  ///< number of calls of open()
    std::atomic<int> begun{0};   ///< number of transfers
    std::atomic<int> allowed;    ///< number of transfers that may end; -1: not even open() may
    std::atomic<int> pause{0};   ///< ms between the last two transfers
    QElapsedTimer sinceLast;
};

/// A queue with a held camera. Records what the queue reports.
struct HeldQueue
{
    explicit HeldQueue(Camera::Access access = Camera::ReadWrite, int allowed = unlimited)
        : camera(std::make_shared<HeldCamera>(allowed))
        , queue(camera, access)
    {
        QObject::connect(&queue, &TransferQueue::transferred, &queue, [this](const Transfer &did) {
            const QString content = did.isStatusRead() ? did.bytes.left(1).toHex() : did.meaning;
            said << QStringList({directionText(did), content, resultText(did)}).join(' ');
        });
    }
    ~HeldQueue() { release(); }

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

    const std::shared_ptr<HeldCamera> camera;
    QStringList said; // outlives the queue, which still reports in its destructor
    TransferQueue queue;
    StatusLine status{queue};
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
        QVERIFY(held.status.text().startsWith(
            "The camera is failing. Reading control 8 failed: EIO, the camera refused"));
        held.release(EIO);
        QTRY_COMPARE(held.said.count("get  EIO"), 3);
        held.release();
        held.send(0x10, 1); // does not wait for the next read
        QTRY_COMPARE(held.said.last(), "set Type: Hand ok");
        QTRY_COMPARE(held.read(), 1);
        QTRY_VERIFY(held.read() && held.camera->pause < 400);
        QCOMPARE(held.status.text(), "The camera is connected.");
    }

    void disconnected()
    {
        QElapsedTimer time;
        time.start();
        HeldQueue held;
        held.hold();
        held.send(0x10, 1);
        held.send(0x07, 2); // waits, and fails with the first one
        QTRY_COMPARE(held.status.text(),
                     "The camera is connected. 1 command waiting, transfer running for 1 s.");
        held.camera->refusal = ENODEV;
        held.release(ENODEV);
        QTRY_COMPARE(held.said.join(", "), "set Type: Hand ENODEV, event disconnected ENODEV, "
                                           "set Mode: Sport ENODEV");
        held.said.clear();
        held.send(0x04, 1);
        QCOMPARE(held.read(), 0);
        QVERIFY(held.status.text().startsWith("The camera is disconnected."));
        held.camera->refusal = EACCES; // back, but not usable
        QTRY_VERIFY(held.status.text().startsWith(
            "The camera is plugged in again but cannot be used. Opening held failed: EACCES"));
        held.queue.prefetchStatus();
        held.camera->refusal = 0;
        held.camera->error = 0;
        QTRY_COMPARE(held.said.join(", "),
                     "set Tracking: on ENODEV, get  not sent, event cannot be used EACCES, "
                     "event back ok");
        QCOMPARE(held.camera->begun, 1); // looking for the camera causes no transfers
        QVERIFY(held.camera->opened <= 1 + time.elapsed() / 1000);

        // A command that failed is remembered until the same setting succeeds.
        held.send(0x10, 0);
        QTRY_COMPARE(held.said.last(), "set Type: Basic ok");
        const QString why(" was not accepted: ENODEV, the camera was unplugged. Plug it in again.");
        QCOMPARE(held.status.text(),
                 "The camera is connected. Tracking: on" + why + " Mode: Sport" + why);
        held.camera->refusal = ENODEV; // unplugged while there is nothing to transfer
        QTRY_COMPARE(held.said.last(), "event disconnected ENODEV");
    }

    void opening()
    {
        HeldQueue held(Camera::ReadWrite, -1);
        held.send(0x10, 1);
        held.queue.prefetchStatus();
        QTRY_COMPARE(held.status.text(), "Opening held. 1 command waiting.");
        QCOMPARE(held.camera->begun, 0);
        held.release();
        QTRY_COMPARE(held.said.join(", "), "set Type: Hand ok, get 01 ok");
        held.camera->state = 2;
        QCOMPARE(held.read(), 1); // what was read first, without another transfer
        QCOMPARE(held.read(), 2);
    }

    void readOnly()
    {
        HeldQueue held(Camera::ReadOnly);
        held.send(0x10, 1);
        QCOMPARE(held.read(), 1);
        QCOMPARE(held.said.join(", "), "set Type: Hand not sent, get 01 ok");
        held.status.setNotice("The trace is full.");
        QCOMPARE(held.status.text(),
                 "The trace is full. Read-only: no commands are sent. The camera is connected.");
    }

    void finish()
    {
        const std::pair<const char *, const char *> rows[] = {
            {"nothing", "set Mode: Standard ok, set Tracking: on ok"},
            {"held command",
             "set Type: Hand ETIMEDOUT, set Mode: Standard not sent, set Tracking: on not sent"},
            {"held read", "get  ETIMEDOUT"},
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
            if (state != "nothing")
                QTRY_COMPARE(held.camera->begun, 2);
            if (state.contains("ends"))
                held.release();
            QSignalSpy reports(&held.queue, &TransferQueue::transferred);
            held.queue.finish();
            QCOMPARE(held.said.join(", "), QString(said));
            if (state.startsWith("held")) {
                const auto hung = reports.takeFirst().at(0).value<Transfer>();
                QVERIFY(hung.duration >= (state.contains("read") ? 100 : 2000));
                QVERIFY(hung.time.addMSecs(hung.duration) <= QDateTime::currentDateTime());
            }

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
