#include "options.h"
#include "testmain.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

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

/// The different results in a trace. If a line is not a complete JSON object, that line.
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

/// The reference host as a user starts it.
class TestHost : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void arguments()
    {
        const std::pair<const char *, const char *> bad[] = {
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
        for (const auto &[arguments, says] : bad) {
            const QString error =
                Options::read(QString("orvhost %1").arg(arguments).split(' ')).error;
            QVERIFY2(error.contains(says), qPrintable(arguments + (": " + error)));
        }
        const Options real = Options::read({"orvhost", "--camera", "a", "--unit=3", "--read-only"});
        QVERIFY(real.error.isEmpty() && real.camera == "a" && real.unit == 3 && real.readOnly);
    }

    void program()
    {
        const struct
        {
            QStringList arguments;
            int exitCode;
            const char *says;
        } rows[] = {
            {{"--help"}, 0, "--status"},
            {{"--platform", "offscreen"}, 2, "platform"}, // Qt's options are not accepted
            {{"--trace", "/nowhere/a"}, 1, "Cannot write the trace"},
            {{"--screenshot", "/nowhere/a.png"}, 1, "Cannot write the picture"},
            {{"nowhere.so"}, 1, "no such file"},
            {{ORVHOST}, 1, "not a Qt plug-in"},
            {{OTHER_PLUGIN}, 1, "com.talsen.OrvPluginApi"},
        };
        for (const auto &row : rows) {
            Host host(row.arguments);
            QCOMPARE(host.exitCode(), row.exitCode);
            QVERIFY2(host.output.contains(row.says), qPrintable(host.output));
        }
    }

    void tours()
    {
        const QTemporaryDir folder;
        const QString picture = folder.filePath("tour.png");
        const QString slowTrace = folder.filePath("slow");
        const QString unpluggedTrace = folder.filePath("unplugged");
        // Run both at the same time. Each takes several seconds, mostly waiting.
        Host slow({"--tour", "--fault", "delay=20", "--status", "0,0,1,2,3", "--screenshot",
                   picture, "--trace", slowTrace});
        Host unplugged(
            {"--tour", "--fault", "unplugged", "--language", "zh", "--trace", unpluggedTrace});
        Host ended({"--tour"});
        QVERIFY(QTest::qWaitFor([&] { return ended.process.peek(10000).contains("1. "); }));
        ended.process.terminate();
        QCOMPARE(ended.exitCode(), 1); // not a crash

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
