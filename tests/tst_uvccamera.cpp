#include "cameralist.h"
#include "errortexts.h"
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

class TestUvcCamera : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void opening()
    {
        const QByteArray more = unit(6, "c000");
        const QByteArray two = head + unit(4, "c000") + unit(5, "c000");
        // Units of another subclass, class and interface do not count.
        const QByteArray foreign = oneUnit + interface(0, 0x0e, 2) + more + interface(0, 0xff, 1) +
                                   more + interface(1, 0x0e, 1) + more;
        // The last two are malformed: more inputs than bytes, and cut off.
        const QByteArray parts = head + unit(4, "4000") + unit(5, "8000") +
                                 unit(6, "c000").replace(21, 1, "\x9") + more.chopped(1);
        const struct
        {
            const char *refusal; // part of the refusal's text
            QByteArray descriptors = oneUnit;
            const char *node = "video0";
            int unit = 0;
            MockCamera::Control command = {};
            MockCamera::Control status = {};
            Camera::Access access = Camera::ReadWrite;
        } rows[] = {
            {"", foreign},
            {"", two, "video0", 4},
            {"controls 7 and 8: 4, 5. Choose one with --unit.", two},
            {"/dev/video0 has no extension unit.", head},
            {"its units: 4, 5. Choose one with --unit.", parts},
            {"7 of unit 9 cannot be set: GET_LEN: ENOENT", oneUnit, "video0", 9},
            {"/dev/video1 is not a capture node", oneUnit, "video1"},
            {"Opening /dev/video9 failed: ENOENT", oneUnit, "video9"},
            {"Opening /dev/null failed: ENOTTY, this is not a video device", oneUnit, "null"},
            {"set: it has 32 bytes.", oneUnit, "video0", 0, {32}},
            {"7 of unit 4 cannot be set: the camera", oneUnit, "video0", 0, {60, 1}},
            {"read: it has 0 bytes.", oneUnit, "video0", 0, {}, {0}},
            {"8 of unit 4 cannot be read: the", oneUnit, "video0", 0, {}, {60, 2}},
            {"", oneUnit, "video0", 0, {32, 1}, {}, Camera::ReadOnly},
        };
        for (const auto &row : rows) {
            MockCamera mock("A1", row.descriptors);
            mock.controls = {{7, row.command}, {8, row.status}};
            mock.plugIn(0);
            const QString node = QString("/dev/") + row.node;
            UvcCamera camera(node, row.unit, row.access);
            QCOMPARE(camera.readStatus().error, ENODEV); // not open yet
            const CameraRefusal refusal = camera.open();
            const QString text = refusalText(refusal);
            QVERIFY2(text.contains(row.refusal), qPrintable(text));
            QCOMPARE(text.isEmpty(), *row.refusal == '\0');
            QCOMPARE(refusal.error == 0, text.isEmpty());
            if (row.access == Camera::ReadOnly)
                QCOMPARE(camera.sendCommand(QByteArray(32, 'c')), EPERM);
            QCOMPARE(mock.writes, 0);
        }
    }

    void transfers()
    {
        MockCamera mock("A1", oneUnit);
        mock.plugIn(0);
        UvcCamera camera("/dev/video0", 0, Camera::ReadWrite);
        QCOMPARE(camera.open().error, 0);
        for (const auto &[reply, error] :
             {std::pair(-EPIPE, EPIPE), {-ENODEV, ENODEV}, {12, EIO}}) {
            mock.replies[UVC_SET_CUR] = reply;
            QCOMPARE(camera.sendCommand(command), error);
            QCOMPARE(camera.open().error, 0);
            mock.replies[UVC_GET_CUR] = reply;
            QCOMPARE(camera.readStatus().error, error);
            mock.replies.clear();
            QCOMPARE(camera.open().error, 0);
        }
        QCOMPARE(mock.writes, 3); // no retries
        mock.queries = 0;
        QCOMPARE(camera.open().error, 0);
        QCOMPARE(mock.queries, 0); // Checks only a camera that was gone.
        QCOMPARE(camera.readStatus().bytes, QByteArray(60, 's'));
        QCOMPARE(camera.sendCommand(command), 0);
        QCOMPARE(mock.written, command);
        mock.queries = 0;
        mock.unplug();
        mock.plugIn(0); // before the next look
        QCOMPARE(camera.open().error, 0);
        QCOMPARE(mock.queries, 4); // the length and capabilities of both controls
    }

    void comingBack()
    {
        MockCamera mock("A1", oneUnit);
        mock.plugIn(0);
        MockCamera twin("A1", oneUnit); // with the same made-up serial number
        twin.plugIn(2, "1-3");
        UvcCamera camera("/dev/video0", 0, Camera::ReadWrite);
        QCOMPARE(camera.open().error, 0);
        mock.unplug();
        QCOMPARE(camera.open().reason, CameraRefusal::Disconnected); // without a transfer
        QCOMPARE(camera.sendCommand(command), ENODEV);
        MockCamera other("A2", oneUnit);
        other.plugIn(0);
        QCOMPARE(camera.open().reason, CameraRefusal::Disconnected);
        QCOMPARE(twin.queries + other.queries, 0);
        other.unplug();

        // Another node of the same port. It is asked again if the answer may change.
        mock.replies[UVC_GET_INFO] = -EBUSY;
        mock.plugIn(4);
        const QString busy = refusalText(camera.open());
        QVERIFY2(busy.contains("GET_INFO: EBUSY, the camera is not ready"), qPrintable(busy));
        QCOMPARE(camera.sendCommand(command), ENODEV);
        mock.replies.clear();
        mock.controls[7].length = 32;
        QCOMPARE(camera.open().reason, CameraRefusal::WrongLength);
        mock.queries = 0;
        QCOMPARE(camera.open().reason, CameraRefusal::WrongLength);
        QCOMPARE(mock.queries, 0); // Asks no more.
        mock.unplug();
        QCOMPARE(camera.open().reason, CameraRefusal::Disconnected);

        // Another port. The new status control is larger than a record.
        mock.controls = {{7, {}}, {8, {300, 1}}};
        mock.plugIn(0, "2-1");
        QCOMPARE(camera.open().error, 0);
        QCOMPARE(camera.readStatus().bytes, QByteArray(255, 's'));
        QCOMPARE(mock.writes + twin.queries, 0);

        // Without serial numbers, only the port tells cameras apart.
        mock.unplug();
        MockCamera plain("", oneUnit);
        plain.plugIn(0);
        UvcCamera unnamed("/dev/video0", 0, Camera::ReadOnly);
        QCOMPARE(unnamed.open().error, 0);
        plain.unplug();
        QCOMPARE(unnamed.open().reason, CameraRefusal::Disconnected);
        plain.plugIn(0, "2-1");
        QCOMPARE(unnamed.open().reason, CameraRefusal::Disconnected);
        plain.unplug();
        plain.plugIn(4);
        QCOMPARE(unnamed.open().error, 0);
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
