#include "errornames.h"
#include "mockcamera.h"
#include "testmain.h"
#include "uvccamera.h"

static QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

static QByteArray interface(int number, int classCode, int subclass)
{
    return bytes("0904") + char(number) + bytes("0000") + char(classCode) + char(subclass) +
           bytes("0000");
}

/// An extension unit with one input.
static QByteArray unit(int number, const char *controls)
{
    return bytes("1b2406") + char(number) + bytes("00112233445566778899aabbccddeeff10010202") +
           bytes(controls) + '\0';
}

static const QByteArray head = bytes("0902000001010080fa") + interface(0, 0x0e, 1);
static const QByteArray oneUnit = head + unit(3, "0100") + unit(4, "c000");
static const QByteArray command = bytes("63").repeated(60);

static std::unique_ptr<UvcCamera> open()
{
    QString refusal;
    return UvcCamera::open("/dev/video0", 0, UvcCamera::Use::ReadAndWrite, &refusal);
}

static int write(UvcCamera &camera, const QByteArray &bytes = command)
{
    return camera.write(7, bytes).error;
}

struct Opening
{
    const char *refusal; ///< a part of it
    QByteArray descriptors = oneUnit;
    int unit = 0;
    const char *node = "/dev/video0";
    MockCamera::Control command = {};
    MockCamera::Control status = {};
    UvcCamera::Use use = UvcCamera::Use::ReadAndWrite;
};
Q_DECLARE_METATYPE(Opening)

class TestUvcCamera : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void opening_data()
    {
        QTest::addColumn<Opening>("opening");
        const auto row = [](const char *name, const Opening &opening) {
            QTest::newRow(name) << opening;
        };
        const QByteArray more = unit(6, "c000");
        const QByteArray two = head + unit(4, "c000") + unit(5, "c000");
        // And a unit of another subclass, of another class, and of another interface.
        const QByteArray foreign = oneUnit + interface(0, 0x0e, 2) + more + interface(0, 0xff, 1) +
                                   more + interface(1, 0x0e, 1) + more;
        // And one with more inputs than bytes, and one that is cut off.
        const QByteArray parts = head + unit(4, "4000") + unit(5, "8000") +
                                 unit(6, "c000").replace(21, 1, "\x9") + more.chopped(1);
        const char *const node = "/dev/video0";
        row("the only unit", {"", foreign});
        row("the unit that is named", {"", two, 4});
        row("several units", {"controls 7 and 8: 4, 5. Choose one with --unit.", two});
        row("no unit", {"its units: none. Choose one with --unit.", head});
        row("units without the controls", {"its units: 4, 5. Choose one with --unit.", parts});
        row("a unit that is missing", {"ENOENT", oneUnit, 9});
        row("the metadata node", {"/dev/video1 is no capture node", oneUnit, 0, "/dev/video1"});
        row("a missing node", {"Opening /dev/video9 failed: ENOENT", oneUnit, 0, "/dev/video9"});
        row("no video node", {"Opening /dev/null failed: ENOTTY", oneUnit, 0, "/dev/null"});
        row("short commands", {"7 of unit 4 cannot be set: it has 32", oneUnit, 0, node, {32}});
        row("no setting", {"7 of unit 4 cannot be set: the camera", oneUnit, 0, node, {60, 1}});
        row("no status", {"8 of unit 4 cannot be read: it has 0", oneUnit, 0, node, {}, {0}});
        row("no reading", {"8 of unit 4 cannot be read: the", oneUnit, 0, node, {}, {60, 2}});
        row("only read", {"", oneUnit, 0, node, {32, 1}, {}, UvcCamera::Use::ReadOnly});
    }

    void opening()
    {
        QFETCH(Opening, opening);
        MockCamera mock("A1", opening.descriptors);
        mock.controls[7] = opening.command;
        mock.controls[8] = opening.status;
        mock.plugIn(0);
        QString refusal;
        const auto camera = UvcCamera::open(opening.node, opening.unit, opening.use, &refusal);
        QVERIFY2(refusal.contains(opening.refusal), qPrintable(refusal));
        QCOMPARE(refusal.isEmpty(), *opening.refusal == '\0');
        QCOMPARE(camera != nullptr, refusal.isEmpty());
        if (opening.use == UvcCamera::Use::ReadOnly)
            QCOMPARE(write(*camera, QByteArray(32, 'c')), EPERM);
        QCOMPARE(mock.writes, 0);
    }

    void transfers()
    {
        MockCamera mock("A1", oneUnit);
        mock.controls[9] = {5, 1, "status"};
        mock.controls[10] = {300, 1, "status"};
        mock.plugIn(0);
        const auto camera = open();
        QVERIFY(camera);
        QCOMPARE(write(*camera), 0);
        QCOMPARE(write(*camera, QByteArray(59, 'd')), ENOBUFS);
        QCOMPARE(camera->read(256 + 8).error, ENOENT);
        QCOMPARE(camera->read(7).bytes, command);
        QCOMPARE(camera->read(9).bytes, QByteArray("statu"));
        // No more than fits into a record.
        QCOMPARE(camera->read(10).bytes, QByteArray("status").leftJustified(255, 's'));

        mock.writes = 0;
        for (const auto &[result, error] : {std::pair(-1, EPIPE), {-1, ENODEV}, {12, EIO}}) {
            const MockCamera::Reply reply = {result, result < 0 ? error : 0};
            mock.replies[{MockCamera::SetCur, 7}] = reply;
            QCOMPARE(write(*camera), error);
            QCOMPARE(camera->read(8).error, 0);
            mock.replies[{MockCamera::GetCur, 8}] = reply;
            const TransferResult failed = camera->read(8);
            QCOMPARE(failed.error, error);
            QCOMPARE(failed.bytes, QByteArray());
            mock.replies[{MockCamera::GetCur, 8}] = {};
            QCOMPARE(camera->read(8).bytes, QByteArray(60, 's'));
        }
        QCOMPARE(mock.writes, 3); // none of them again
        QVERIFY(transferError("X", EACCES).contains("group \"video\""));
        for (const int error : {EBUSY, EINVAL, EBADRQC, EPROTO, ETIMEDOUT})
            QVERIFY(transferError("X", error).startsWith("X failed: E"));
    }

    void unplugging()
    {
        MockCamera mock("A1", oneUnit);
        MockCamera other("A2", oneUnit);
        mock.controls[9] = {60};
        mock.plugIn(0);
        const auto camera = open();
        QVERIFY(camera);
        QCOMPARE(camera->read(9).bytes.size(), 60);

        mock.unplug();
        QCOMPARE(write(*camera), ENODEV);
        QCOMPARE(camera->read(8).error, ENODEV);

        other.plugIn(0);
        QCOMPARE(camera->read(8).error, ENODEV);
        QCOMPARE(write(*camera), ENODEV);
        other.unplug();

        // Back, but not yet of use.
        mock.replies[{MockCamera::GetInfo, 7}] = {-1, EPIPE};
        mock.controls[9] = {5};
        mock.plugIn(4);
        QCOMPARE(camera->read(8).error, EPIPE);
        QCOMPARE(write(*camera), ENODEV);
        mock.replies[{MockCamera::GetInfo, 7}] = {};
        QCOMPARE(camera->read(8).bytes, QByteArray(60, 's'));
        QCOMPARE(camera->read(9).bytes.size(), 5);
        QCOMPARE(mock.writes, 0);
        QCOMPARE(write(*camera), 0);
        QCOMPARE(other.writes, 0);
    }

    void listing()
    {
        QCOMPARE(listCameras(), QString("No camera was found.\n"));
        MockCamera mock("A1", oneUnit);
        mock.plugIn(0);
        QCOMPARE(
            listCameras(),
            QString("/dev/video0: A?camera, driver uvcvideo, bus usb-0000:00:14.0-2.3\n"
                    "    unit 3 {33221100-5544-7766-8899-aabbccddeeff}, neither control 7 nor 8\n"
                    "    unit 4 {33221100-5544-7766-8899-aabbccddeeff}, controls 7 and 8\n"));
    }
};

TEST_MAIN(TestUvcCamera)
#include "tst_uvccamera.moc"
