#include "testmain.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

/// The exit code, -1 if there is none, and all that was printed.
std::pair<int, QString> runHost(const QStringList &arguments)
{
    QProcess host;
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.start(QStringLiteral(ORVHOST), arguments);
    const bool ended = host.waitForFinished(150000) && host.exitStatus() == QProcess::NormalExit;
    return {ended ? host.exitCode() : -1, QString::fromLocal8Bit(host.readAll())};
}

} // namespace

/// The reference host as a user starts it.
class TestHost : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void commandLine_data()
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

    void commandLine()
    {
        QFETCH(QString, says);
        // A path stands alone, and may have spaces in it.
        const QString text(QTest::currentDataTag());
        const auto [code, output] =
            runHost(QFile::exists(text) ? QStringList(text) : text.split(' '));
        QTEST(code, "exitCode");
        QVERIFY2(output.contains(says), qPrintable(output));
    }

    void tour_data()
    {
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("says");
        QTest::addColumn<QString>("results"); // that are in the trace
        QTest::newRow("delay=40") << 0 << "FF 53 05 10 01 02  Type: Board"
                                  << "ok superseded";
        QTest::newRow("unplugged") << 1 << "the camera has reported nothing"
                                   << "ENODEV not sent ok";
    }

    void tour()
    {
        const QTemporaryDir folder;
        const QString picture = folder.filePath("tour.png");
        const QString trace = folder.filePath("trace");
        const auto [code, output] = runHost({"--tour", "--fault", QTest::currentDataTag(),
                                             "--screenshot", picture, "--trace", trace});
        QTEST(code, "exitCode");
        QFETCH(QString, says);
        QVERIFY2(output.contains(says), qPrintable(output));
        static const QRegularExpression stall("longest stall of the window: [1-9]");
        QVERIFY(output.contains(stall));
        QVERIFY(!QImage(picture).isNull());

        QFile file(trace);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QStringList results;
        while (!file.atEnd()) {
            const QByteArray line = file.readLine();
            QVERIFY2(line.endsWith('\n'), line);
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            QCOMPARE(object.keys().join(' '),
                     "bytes direction meaning ms request result selector time");
            results << object.value("result").toString();
        }
        results.sort();
        results.removeDuplicates();
        QTEST(results.join(' '), "results");
    }
};

TEST_MAIN(TestHost)
#include "tst_host.moc"
