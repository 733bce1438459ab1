#include "errornames.h"
#include "mockcamera.h"
#include "testmain.h"
#include "uvccamera.h"

#include <linux/capability.h>

#include <cerrno>
#include <future>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static QByteArray configuration(int value)
{
    return QByteArray("\x09\x02\0\0\1", 5) + char(value) + QByteArray("\0\x80\xfa", 3);
}

static QByteArray interface(int number, int classCode, int subclass)
{
    return QByteArray("\x09\x04", 2) + char(number) + QByteArray("\0\0", 2) + char(classCode) +
           char(subclass) + QByteArray("\0\0", 2);
}

/// An extension unit with one input.
static QByteArray unit(int number, const char *controls)
{
    return QByteArray("\x1b\x24\x06", 3) + char(number) +
           QByteArray::fromHex("00112233445566778899aabbccddeeff") + QByteArray("\x10\1\2\2", 4) +
           QByteArray::fromHex(controls) + '\0';
}

static const QByteArray head = configuration(1) + interface(0, 0x0e, 1);
static const QByteArray oneUnit = head + unit(3, "0100") + unit(4, "c000");

static std::unique_ptr<UvcCamera> open()
{
    QString refusal;
    return UvcCamera::open("/dev/video0", 0, UvcCamera::Use::ReadAndWrite, &refusal);
}

/// Transfers in a thread of their own, as a host does them.
static TransferResult read(UvcCamera &camera, int selector = 8)
{
    return std::async(std::launch::async, [&] { return camera.read(selector); }).get();
}

static int write(UvcCamera &camera, const QByteArray &bytes)
{
    return std::async(std::launch::async, [&] { return camera.write(7, bytes).error; }).get();
}

class TestUvcCamera : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void descriptors_data();
    void descriptors();
    void opening_data();
    void opening();
    void lengths_data();
    void lengths();
    void failures_data();
    void failures();
    void unplugging();
    void forbidden();
    void listing();

private:
    const Testbed m_testbed{umockdev_testbed_new(), g_object_unref};
};

void TestUvcCamera::descriptors_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("units");

    QTest::newRow("several units")
        << oneUnit + unit(5, "4000") + unit(255, "8000") << "3: 4:78 5:7 255:8";
    QTest::newRow("one unit that another interface has")
        << oneUnit + interface(1, 0x0e, 2) + unit(5, "c000") + interface(2, 0xff, 1) +
               unit(6, "c000")
        << "3: 4:78";
    QTest::newRow("a length of 0") << head + unit(4, "c000") + '\0' + unit(5, "c000") << "4:78";
    QTest::newRow("cut off") << oneUnit.chopped(1) << "3:";
    QTest::newRow("more inputs than bytes") << head + unit(4, "c000").replace(21, 1, "\x9") << "";
}

void TestUvcCamera::descriptors()
{
    QFETCH(QByteArray, bytes);
    QStringList units;
    const auto parsed = extensionUnits(bytes);
    for (const UnitDescriptor &found : parsed) {
        QString text = QString::number(found.number) + ':';
        for (const int selector : {7, 8})
            text += found.has(selector) ? QString::number(selector) : QString();
        units << text;
    }
    QTEST(units.join(' '), "units");
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

void TestUvcCamera::opening_data()
{
    QTest::addColumn<Opening>("opening");
    const auto row = [](const char *name, const Opening &opening) {
        QTest::newRow(name) << opening;
    };
    const QByteArray two = head + unit(4, "c000") + unit(5, "c000");
    const QByteArray parts = head + unit(4, "4000") + unit(5, "8000");
    const char *const node = "/dev/video0";
    row("the only unit", {""});
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

void TestUvcCamera::opening()
{
    QFETCH(Opening, opening);
    MockCamera mock(m_testbed, "A1", opening.descriptors);
    mock.setControl(7, opening.command);
    mock.setControl(8, opening.status);
    mock.plugIn(0);
    QString refusal;
    const auto camera = UvcCamera::open(opening.node, opening.unit, opening.use, &refusal);
    QVERIFY2(refusal.contains(opening.refusal), qPrintable(refusal));
    QCOMPARE(refusal.isEmpty(), *opening.refusal == '\0');
    QCOMPARE(camera != nullptr, refusal.isEmpty());
    if (opening.use == UvcCamera::Use::ReadOnly)
        QCOMPARE(write(*camera, QByteArray(32, 'c')), EPERM);
    QCOMPARE(mock.writes(), 0);
}

void TestUvcCamera::lengths_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("read");
    QTest::newRow("short") << 5 << 5;
    QTest::newRow("as commands") << 60 << 60;
    QTest::newRow("longer than a record") << 300 << 255;
}

void TestUvcCamera::lengths()
{
    QFETCH(int, length);
    QFETCH(int, read);
    MockCamera mock(m_testbed, "A1", oneUnit);
    mock.setControl(8, {length, 1, "status"});
    mock.plugIn(0);
    const auto camera = open();
    QVERIFY(camera);
    QCOMPARE(::read(*camera).bytes, QByteArray("status").leftJustified(length, 's').left(read));
    QCOMPARE(write(*camera, QByteArray(60, 'c')), 0);
    QCOMPARE(::read(*camera, 7).bytes, QByteArray(60, 'c'));
    QCOMPARE(write(*camera, QByteArray(59, 'd')), ENOBUFS);
    QCOMPARE(::read(*camera, 256 + 8).error, ENOENT);
    QCOMPARE(::read(*camera, 7).bytes, QByteArray(60, 'c'));
}

void TestUvcCamera::failures_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("error");
    for (const int error :
         {EBUSY, ENOENT, ENODEV, ENOBUFS, EPIPE, EPROTO, EIO, ETIMEDOUT, EINVAL, EBADRQC})
        QTest::newRow(qPrintable(errorName(error))) << -1 << error;
    QTest::newRow("a short reply") << 12 << EIO;
}

void TestUvcCamera::failures()
{
    QFETCH(int, result);
    QFETCH(int, error);
    MockCamera mock(m_testbed, "A1", oneUnit);
    mock.plugIn(0);
    const auto camera = open();
    QVERIFY(camera);

    mock.setReply(SetCur, 7, {result, error});
    QCOMPARE(write(*camera, QByteArray(60, 'c')), error);
    QCOMPARE(::read(*camera).error, 0);
    QCOMPARE(mock.writes(), 1);
    mock.setReply(GetCur, 8, {result, error, 50});
    const TransferResult failed = ::read(*camera);
    QCOMPARE(failed.error, error);
    QCOMPARE(failed.bytes, QByteArray());
    mock.setReply(GetCur, 8, {0, 0, 50});
    QCOMPARE(::read(*camera).bytes, QByteArray(60, 's'));
    QCOMPARE(mock.writes(), 1);
    QVERIFY(transferError("X", error).startsWith("X failed: E"));
}

void TestUvcCamera::unplugging()
{
    MockCamera mock(m_testbed, "A1", oneUnit);
    MockCamera other(m_testbed, "A2", oneUnit);
    mock.plugIn(0);
    const auto camera = open();
    QVERIFY(camera);

    mock.setReply(SetCur, 7, {0, 0, 300});
    auto writing =
        std::async(std::launch::async, [&] { return write(*camera, QByteArray(60, 'c')); });
    mock.awaitTransfer();
    mock.unplug();
    QCOMPARE(writing.get(), ENODEV);
    QCOMPARE(::read(*camera).error, ENODEV);

    other.plugIn(0);
    QCOMPARE(::read(*camera).error, ENODEV);
    QCOMPARE(write(*camera, QByteArray(60, 'c')), ENODEV);
    other.unplug();

    // Back, but not yet of use.
    mock.setReply(GetInfo, 7, {-1, EPIPE});
    mock.plugIn(4);
    QCOMPARE(::read(*camera).error, EPIPE);
    QCOMPARE(write(*camera, QByteArray(60, 'c')), ENODEV);
    mock.setReply(GetInfo, 7, {});
    QCOMPARE(::read(*camera).bytes, QByteArray(60, 's'));
    QCOMPARE(mock.writes(), 1);
    mock.setReply(SetCur, 7, {});
    QCOMPARE(write(*camera, QByteArray(60, 'c')), 0);
    QCOMPARE(other.writes(), 0);
}

void TestUvcCamera::forbidden()
{
    MockCamera mock(m_testbed, "A1", oneUnit);
    mock.plugIn(0);
    QCOMPARE(::chmod("/dev/video0", 0), 0);
    QString refusal;
    std::async(std::launch::async, [&refusal] {
        // This thread alone gives up what root may.
        __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct none[2] = {};
        ::syscall(SYS_capset, &header, none);
        UvcCamera::open("/dev/video0", 0, UvcCamera::Use::ReadAndWrite, &refusal);
    }).get();
    QVERIFY2(refusal.startsWith("Opening /dev/video0 failed: EACCES"), qPrintable(refusal));
    QVERIFY2(refusal.contains("group \"video\""), qPrintable(refusal));
}

void TestUvcCamera::listing()
{
    QCOMPARE(listCameras(), QString("No camera was found.\n"));
    MockCamera mock(m_testbed, "A1", oneUnit);
    mock.plugIn(0);
    QCOMPARE(listCameras(),
             QString("/dev/video0: A?camera, driver uvcvideo, bus usb-0000:00:14.0-2.3\n"
                     "    unit 3 {33221100-5544-7766-8899-aabbccddeeff}, neither control 7 nor 8\n"
                     "    unit 4 {33221100-5544-7766-8899-aabbccddeeff}, controls 7 and 8\n"));
}

TEST_MAIN(TestUvcCamera)
#include "tst_uvccamera.moc"
