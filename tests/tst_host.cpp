#include "commandchannel.h"
#include "options.h"
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

namespace {

/// A channel to a simulated camera of a type that nobody knows.
struct Channel
{
    Channel()
    {
        camera->setValue(TrackingProtocol::Type, 9);
        channel.setSetting("language", 1);
    }

    /// The words that the trace has for a request.
    QString request(int kind, const QVariant &record)
    {
        QSignalSpy transfers(&channel, &CommandChannel::transferred);
        answer = channel.request(kind, record).value<ExtensionUnit>();
        if (!QTest::qWaitFor([&transfers] { return !transfers.isEmpty(); }))
            return "nothing";
        traced = transfers.first().first().value<Transfer>();
        return QString("%1 %2 %3: ").arg(traced.direction, traced.request).arg(traced.selector) +
               traced.meaning + ": " + traced.result;
    }

    const std::shared_ptr<SimulatedCamera> camera = std::make_shared<SimulatedCamera>();
    TransferQueue queue{camera};
    CommandChannel channel{queue};
    ExtensionUnit answer;
    Transfer traced;
};

/// The reference host in a process of its own.
struct Host
{
    explicit Host(const QStringList &arguments)
    {
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(ORVHOST, arguments);
    }

    /// Waits for the host to exit. Returns -1 if it crashes or hangs.
    int exitCode()
    {
        const bool ended = process.waitForFinished(150000);
        output = QString::fromLocal8Bit(process.readAll());
        return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    QProcess process;
    QString output; ///< complete after exitCode()
};

/// The different results in a trace, or its first line that is not a complete JSON object.
QString resultsIn(const QString &trace)
{
    QFile file(trace);
    QStringList results;
    file.open(QIODevice::ReadOnly);
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        if (!line.endsWith('\n') ||
            object.keys().join(' ') != "bytes direction meaning ms request result selector time")
            return line;
        results << object["result"].toString();
    }
    results.sort();
    results.removeDuplicates();
    return results.join(' ');
}

} // namespace

/// The channel to the simulated camera, the trace, and the reference host as a user starts it.
class TestHost : public Test
{
    Q_OBJECT

private Q_SLOTS:
    // Direction, control, length, bytes, and a fault of the camera.
    void transfers_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QByteArray>("status"); // the camera's afterwards
        const struct
        {
            const char *request, *words, *status = "0001090100";
        } rows[] = {
            {"get 8 0", "tracking on, type 9 (unknown), mode Standard, composition off: ok"},
            {"get 8 0 - short=3", "only 3 bytes, tracking on, type 9 (unknown): ok"},
            {"get 8 0 - no-answer", "no answer: ETIMEDOUT"},
            {"get 8 0 - errno=EPROTO", "no answer: EPROTO"},
            {"get 7 0", "refused: control 7 is not for this: not sent"},
            {"set 7 60 FF5305040100", "Tracking: off: ok", "0000090100"},
            {"set 7 60 FF5305100102", "Type: Board: ok", "0001020100"},
            {"set 7 60 FF5305070102", "Mode: Sport: ok", "0001090200"},
            {"set 7 60 FF5305130103", "Composition: Bodies: ok", "0001090103"},
            {"set 7 60 FF5305130103 refuse-writes", "Composition: Bodies: EPIPE"},
            {"set 8 60 FF5305040100", "refused: control 8 is not for this: not sent"},
            {"set 7 255 FF5305040100", "refused: 255 bytes instead of 60: not sent"},
            {"set 7 60 FF5306040100", "refused: the header is not FF 53 05: not sent"},
            {"set 7 60 FF5305050100", "refused: unknown command 0x05: not sent"},
            {"set 7 60 FF5305040200", "refused: a value of 2 bytes instead of 1: not sent"},
            {"set 7 60 FF5305070109", "refused: Mode: 9 (unknown): not sent"},
        };
        for (const auto &row : rows)
            QTest::newRow(row.request) << row.words << QByteArray(row.status);
    }

    void transfers()
    {
        const QStringList request = QString(QTest::currentDataTag()).split(' ');
        ExtensionUnit unit;
        unit.write = request[0] == "set";
        unit.selector = request[1].toInt();
        unit.length = request[2].toULongLong();
        const QByteArray bytes = QByteArray::fromHex(request.value(3).toLatin1());
        std::copy(bytes.cbegin(), bytes.cend(), unit.data);
        Channel channel;
        Faults faults = noFaults;
        QVERIFY(request.size() < 5 || addFault(faults, request[4]).isEmpty());
        channel.camera->setFaults(faults);

        QFETCH(QString, words);
        QCOMPARE(channel.request(ChannelRequest::Extension, QVariant::fromValue(unit)),
                 request[0] + " Extension " + request[1] + ": " + words);
        const SimulatedCamera::Status status = channel.camera->status();
        QTEST(QByteArray(reinterpret_cast<const char *>(status.data()), 5).toHex(), "status");
        QVERIFY(channel.answer.length <= TrackingProtocol::blockLength);
        if (!unit.write)
            QCOMPARE(QByteArray(reinterpret_cast<const char *>(channel.answer.data),
                                int(channel.answer.length)),
                     channel.traced.bytes);
    }

    void otherRequests()
    {
        Channel channel;
        const auto words = [&channel](int kind, auto record) {
            return channel.request(kind, QVariant::fromValue(record));
        };
        QCOMPARE(words(0, SettingData{"language", 0}), "get Setting 0: language: 1: ok");
        QCOMPARE(words(0, SettingData{"volume", 0}), "get Setting 0: volume: no such setting: ok");
        QCOMPARE(words(3, CameraData{nullptr, true, 3, 0, 2}),
                 "set Camera 0: notice from no widget: true, 3, 0, 2: ok");
        const QString refused(" %1 0: refused: no such request with the record \"%2\": not sent");
        QCOMPARE(words(4, SettingData()), refused.arg(4).arg("SettingData"));
        QCOMPARE(words(9, ExtensionUnit()), refused.arg(9).arg("ExtensionUnit"));
    }

    // Each example in docs/wire.md: its words, and lines of bytes. Every command is among them.
    void paper()
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

    void folding()
    {
        TraceModel trace;
        TraceFilter rows(trace);
        const auto add = [&](const char *direction, const char *bytes, const char *result = "ok") {
            trace.add({{}, 0, direction, "", 8, QByteArray::fromHex(bytes), bytes, result});
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
        QCOMPARE(shown(), "0001 (2 times)|0002 (3 times)|ff530510");
        trace.setPaused(false);
        QCOMPARE(shown(), "0001 (2 times)|0002 (3 times)|ff530510|0002| (2 times)");
        QCOMPARE(rows.index(1, 0).data(TraceModel::ChangedBytes), QByteArray("\0\1", 2));
        rows.setFolded(false);
        QCOMPARE(shown(), "0001|0001|0002|0002|0002|ff530510|0002||");
        rows.setFilterFixedString("0001");
        QCOMPARE(shown(), "0001|0001");
    }

    void badArguments()
    {
        const std::pair<const char *, const char *> rows[] = {
            {"--language fr", "en or zh"},
            {"--status 0,1,2,3,256", "five numbers"},
            {"--fault broken", "changes-itself"},
            {"--fault delay=10001", "delay=0..10000"},
            {"--fault errno=ENOENT", "EPIPE"},
            {"--unit 3", "--unit needs --camera"},
            {"--camera /dev/video0 --unit 256", "from 1 to 255"},
            {"--camera /dev/video0 --status 0,1,0,1,0", "cannot be combined"},
            {"--trace=", "name of a file"},
            {"a b", "Only one"},
        };
        for (const auto &[arguments, says] : rows) {
            const QString error =
                Options::read(QString("orvhost %1").arg(arguments).split(' ')).error;
            QVERIFY2(error.contains(says), qPrintable(arguments + (": " + error)));
        }
    }

    void goodArguments()
    {
        const Options options =
            Options::read(QString("orvhost panel.so --fault delay=5 --fault=random "
                                  "--status 1,0,2,255,3")
                              .split(' '));
        QCOMPARE(options.error, QString());
        QCOMPARE(options.plugin, QString("panel.so"));
        QCOMPARE(options.status, (TrackingProtocol::Status{1, 0, 2, 255, 3}));
        QCOMPARE(options.faults[Fault::Delay], 5);
        QCOMPARE(options.faults[Fault::Random], 1);
        const Options real = Options::read({"orvhost", "--camera", "a", "--unit=3", "--read-only"});
        QVERIFY(real.error.isEmpty() && real.camera == "a" && real.unit == 3 && real.readOnly);
    }

    void program_data()
    {
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("says");
        QTest::newRow("--help") << 0 << "--status";
        QTest::newRow("--platform offscreen") << 2 << "platform"; // Qt's options are not accepted
        QTest::newRow("--trace /nowhere/a") << 1 << "Cannot write the trace";
        QTest::newRow("--screenshot /nowhere/a.png") << 1 << "Cannot write the picture";
        QTest::newRow("nowhere.so") << 1 << "no such file";
        QTest::newRow(ORVHOST) << 1 << "not a Qt plug-in";
        QTest::newRow(OTHER_PLUGIN) << 1 << "com.talsen.OrvPluginApi";
    }

    void program()
    {
        QFETCH(QString, says);
        // A path is a single argument, even with spaces in it.
        const QString text(QTest::currentDataTag());
        Host host(QFile::exists(text) ? QStringList(text) : text.split(' '));
        QTEST(host.exitCode(), "exitCode");
        QVERIFY2(host.output.contains(says), qPrintable(host.output));
    }

    void tours()
    {
        const QTemporaryDir folder;
        const QString picture = folder.filePath("tour.png");
        const QString slowTrace = folder.filePath("slow");
        const QString unpluggedTrace = folder.filePath("unplugged");
        // Both take several seconds, most of which they wait.
        Host slow({"--tour", "--fault", "delay=20", "--status", "0,0,1,2,3", "--screenshot",
                   picture, "--trace", slowTrace});
        Host unplugged(
            {"--tour", "--fault", "unplugged", "--language", "zh", "--trace", unpluggedTrace});

        QCOMPARE(unplugged.exitCode(), 1);
        QVERIFY(unplugged.output.contains("language: 0"));
        QVERIFY(unplugged.output.contains("DIFFERENT: the camera has reported nothing"));
        QCOMPARE(resultsIn(unpluggedTrace), QString("ENODEV not sent ok"));

        QCOMPARE(slow.exitCode(), 0);
        for (const char *const words : {"00 00 01 02 03 00  tracking off, type Hand, mode Sport",
                                        "FF 53 05 10 01 02  Type: Board"})
            QVERIFY2(slow.output.contains(words), qPrintable(slow.output));
        static const QRegularExpression stall("longest stall of the window: [1-9]");
        QVERIFY(slow.output.contains(stall));
        QCOMPARE(resultsIn(slowTrace), QString("ok superseded"));
        QVERIFY(!QImage(picture).isNull());
    }
};

TEST_MAIN(TestHost)
#include "tst_host.moc"
