#include "commandchannel.h"
#include "orvpluginapi.h"
#include "simulatedcamera.h"
#include "testmain.h"
#include "tracemodel.h"
#include "transferqueue.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

/// The channel to the simulated camera, the trace, and the reference host as a user starts it.
class TestHost : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void transfers_data();
    void transfers();
    void paper();
    void folding();
    void commandLine_data();
    void commandLine();
    void tour_data();
    void tour();
};

static QVariant extension(bool write, int selector, const char *bytes = "", int length = 60)
{
    ExtensionUnit unit;
    unit.write = write;
    unit.selector = selector;
    unit.length = write ? quint64(length) : 0;
    const QByteArray payload = QByteArray::fromHex(bytes);
    std::copy(payload.cbegin(), payload.cend(), unit.data);
    return QVariant::fromValue(unit);
}

void TestHost::transfers_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QVariant>("record");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QByteArray>("status"); // the camera's afterwards

    constexpr int x = ChannelRequest::Extension;
    const auto set = [](const char *bytes, int selector = 7, int length = 60) {
        return extension(true, selector, bytes, length);
    };
    const QVariant get = extension(false, 8);
    const QVariant query = QVariant::fromValue(SettingData{"language", 0});
    const auto row = [](const char *name, int kind, const QVariant &record, const char *words,
                        const char *status = "0001090100", const char *fault = "") {
        QTest::newRow(name) << fault << kind << record << words << QByteArray(status);
    };
    row("setting", 0, query, "get Setting 0: language: 1: ok");
    row("other setting", 0, QVariant::fromValue(SettingData{"volume", 0}),
        "get Setting 0: volume: no such setting: ok");
    row("notice", 3, QVariant::fromValue(CameraData{nullptr, true, 3, 0, 2}),
        "set Camera 0: notice from no widget: true, 3, 0, 2: ok");
    row("record of another kind", x, query,
        " 4 0: refused: no such request with the record \"SettingData\": not sent");
    row("unknown kind", 9, get,
        " 9 0: refused: no such request with the record \"ExtensionUnit\": not sent");
    row("status with an unknown value", x, get,
        "get Extension 8: tracking on, type 9 (unknown), mode Standard, composition off: ok");
    row("short status", x, get, "get Extension 8: only 3 bytes, tracking on, type 9 (unknown): ok",
        "0001090100", "short=3");
    row("no answer", x, get, "get Extension 8: no answer: ETIMEDOUT", "0001090100", "no-answer");
    row("failing", x, get, "get Extension 8: no answer: EPROTO", "0001090100", "errno=EPROTO");
    row("tracking", x, set("FF5305040100"), "set Extension 7: Tracking: off: ok", "0000090100");
    row("type", x, set("FF5305100102"), "set Extension 7: Type: Board: ok", "0001020100");
    row("mode", x, set("FF5305070102"), "set Extension 7: Mode: Sport: ok", "0001090200");
    row("composition", x, set("FF5305130103"), "set Extension 7: Composition: Bodies: ok",
        "0001090103");
    row("refused by the camera", x, set("FF5305130103"),
        "set Extension 7: Composition: Bodies: EPIPE", "0001090100", "refuse-writes");
    row("control", x, set("FF5305040100", 8),
        "set Extension 8: refused: control 8 is not for this: not sent");
    row("control of a read", x, extension(false, 7),
        "get Extension 7: refused: control 7 is not for this: not sent");
    row("length", x, set("FF5305040100", 7, 255),
        "set Extension 7: refused: 255 bytes instead of 60: not sent");
    row("header", x, set("FF5306040100"),
        "set Extension 7: refused: the header is not FF 53 05: not sent");
    row("command", x, set("FF5305050100"),
        "set Extension 7: refused: unknown command 0x05: not sent");
    row("length of the value", x, set("FF5305040200"),
        "set Extension 7: refused: a value of 2 bytes instead of 1: not sent");
    row("value", x, set("FF5305070109"), "set Extension 7: refused: Mode: 9 (unknown): not sent");
}

void TestHost::transfers()
{
    QFETCH(QString, fault);
    QFETCH(int, kind);
    QFETCH(QVariant, record);
    const auto camera = std::make_shared<SimulatedCamera>();
    camera->setValue(TrackingProtocol::Type, 9);
    Faults faults = noFaults;
    QVERIFY(fault.isEmpty() || addFault(faults, fault).isEmpty());
    camera->setFaults(faults);
    TransferQueue queue(camera);
    CommandChannel channel(queue);
    channel.setSetting("language", 1);
    QSignalSpy transfers(&channel, &CommandChannel::transferred);

    const QVariant answer = channel.request(kind, record);
    QTRY_COMPARE(transfers.size(), 1);
    const auto shown = transfers.first().first().value<Transfer>();
    QTEST(QStringList({QString("%1 %2 %3").arg(shown.direction, shown.request).arg(shown.selector),
                       shown.meaning, shown.result})
              .join(": "),
          "words");
    const SimulatedCamera::Status status = camera->status();
    QTEST(QByteArray(reinterpret_cast<const char *>(status.data()), 5).toHex(), "status");
    if (shown.isStatusRead()) {
        const auto unit = answer.value<ExtensionUnit>();
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(unit.data), int(unit.length)),
                 shown.bytes);
    }
}

// Each example in docs/wire.md: its words, and lines of bytes. Every command is among them.
void TestHost::paper()
{
    using namespace TrackingProtocol;
    QFile file(WIRE_PAPER);
    QVERIFY(file.open(QIODevice::ReadOnly));
    static const QRegularExpression example("\n(.+)\n((?:[0-9A-F]{2}[ \n])+)");
    auto examples = example.globalMatch(QString::fromUtf8(file.readAll()));
    QStringList commands;
    while (examples.hasNext()) {
        const auto match = examples.next();
        const QByteArray bytes = QByteArray::fromHex(match.captured(2).toLatin1());
        const bool isCommand = bytes.startsWith('\xFF');
        QCOMPARE(match.captured(1), isCommand ? describeCommand(bytes) : describeStatus(bytes));
        QCOMPARE(isCommand ? refusal(true, commandSelector, bytes) : QString(), QString());
        commands += isCommand ? QStringList(match.captured(1)) : QStringList();
    }
    QStringList all;
    for (const Field field : settingFields) {
        const auto values = knownValues(field);
        for (const quint8 value : values)
            all << fieldName(field) + ": " + valueName(field, value);
    }
    QCOMPARE(commands, all);
}

void TestHost::folding()
{
    TraceModel trace;
    TraceFilter rows(trace);
    const auto add = [&](const char *direction, const char *bytes, const char *result = "ok") {
        Transfer transfer;
        transfer.direction = direction;
        transfer.selector = 8;
        transfer.bytes = QByteArray::fromHex(bytes);
        transfer.meaning = bytes;
        transfer.result = result;
        trace.add(transfer);
    };
    const auto shown = [&] {
        QStringList texts;
        for (int row = 0; row < rows.rowCount(); ++row)
            texts << rows.index(row, TraceModel::Meaning).data().toString();
        return texts.join('|');
    };
    for (const char *block : {"0001", "0001", "0002", "0002", "0002"})
        add("get", block);
    add("set", "ff530510");
    trace.setPaused(true);
    add("get", "0002");
    add("get", "", "EIO");
    add("get", "", "not sent");
    QCOMPARE(shown(), QString("0001 (2 times)|0002 (3 times)|ff530510"));
    trace.setPaused(false);
    QCOMPARE(shown(), QString("0001 (2 times)|0002 (3 times)|ff530510|0002| (2 times)"));
    QCOMPARE(rows.index(1, 0).data(TraceModel::ChangedBytes).toByteArray().toHex(),
             QByteArray("0001"));
    rows.setFolded(false);
    rows.setFilterFixedString("0001");
    QCOMPARE(shown(), QString("0001|0001"));
}

/// The exit code, -1 if there is none, and all that was printed.
static std::pair<int, QString> runHost(const QStringList &arguments)
{
    QProcess host;
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.start(QStringLiteral(ORVHOST), arguments);
    const bool ended = host.waitForFinished(60000) && host.exitStatus() == QProcess::NormalExit;
    return {ended ? host.exitCode() : -1, QString::fromLocal8Bit(host.readAll())};
}

void TestHost::commandLine_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("says");
    const std::tuple<const char *, int, const char *> rows[] = {
        {"--help", 0, "--status"},
        {"--version", 0, "orvhost 1"},
        {"--platform offscreen", 2, "platform"}, // Qt's own options are none of this program's
        {"--language fr", 2, "en or zh"},
        {"--status 1,2", 2, "five numbers"},
        {"--status 0,1,2,3,256", 2, "five numbers"},
        {"--delay -1", 2, "--delay"},
        {"--fault broken", 2, "changes-itself"},
        {"--fault delay=10001", 2, "delay=0..10000"},
        {"--fault errno=ENOENT", 2, "EPIPE"},
        {"--fault random=1", 2, "without a value"},
        {"--pictures a", 2, "--pictures needs --gallery"},
        {"--gallery --pictures /nowhere", 1, "Cannot write the picture"},
        {"--unit 3", 2, "--unit needs --camera"},
        {"--read-only", 2, "--read-only needs --camera"},
        {"--camera /dev/video0 --no-answer", 2, "exclude each other"},
        {"--trace /nowhere/a", 1, "Cannot write the trace"},
        {"--dpi many", 2, "--dpi"},
        {"--scale 0", 2, "--scale"},
        {"a b", 2, "Only one"},
        {"nowhere.so", 1, "no such file"},
        {ORVHOST, 1, "not a Qt plug-in"},
        {OTHER_PLUGIN, 1, "com.talsen.OrvPluginApi"},
        {"--screenshot /nowhere/a.png", 1, "Cannot write"},
    };
    for (const auto &[arguments, exitCode, says] : rows)
        QTest::newRow(arguments) << exitCode << says;
}

void TestHost::commandLine()
{
    QFETCH(QString, says);
    // A path stands alone, and may have spaces in it.
    const QString text(QTest::currentDataTag());
    const auto [code, output] = runHost(QFile::exists(text) ? QStringList(text) : text.split(' '));
    QTEST(code, "exitCode");
    QVERIFY2(output.contains(says), qPrintable(output));
}

void TestHost::tour_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("says");
    QTest::addColumn<QStringList>("results"); // that are in the trace

    QTest::newRow("slow") << "delay=40" << 0 << "FF 53 05 10 01 02"
                          << QStringList({"ok", "superseded"});
    QTest::newRow("unplugged") << "unplugged" << 1 << "the camera has reported nothing"
                               << QStringList({"ENODEV", "not sent", "ok"});
}

void TestHost::tour()
{
    QFETCH(QString, fault);
    const QTemporaryDir folder;
    const QString picture = folder.filePath("tour.png");
    const QString trace = folder.filePath("trace");
    const auto [code, output] =
        runHost({"--tour", "--fault", fault, "--screenshot", picture, "--trace", trace});
    QTEST(code, "exitCode");
    QFETCH(QString, says);
    QVERIFY2(output.contains(says), qPrintable(output));
    QVERIFY(output.contains("longest stall of the window: "));
    QVERIFY(!QImage(picture).isNull());

    QFile file(trace);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QStringList results;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        QVERIFY2(line.endsWith('\n') && object.size() == 8, line);
        results << object.value("result").toString();
    }
    results.sort();
    results.removeDuplicates();
    QTEST(results, "results");
}

TEST_MAIN(TestHost)
#include "tst_host.moc"
