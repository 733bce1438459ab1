#include "commandchannel.h"
#include "simulatedcamera.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

/// The simulated camera, and the reference host as a user starts it.
class TestHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commands_data();
    void commands();
    void commandLine_data();
    void commandLine();
    void tour();
};

void TestHost::commands_data()
{
    QTest::addColumn<int>("selector");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QByteArray>("status"); // empty: refused
    const auto row = [](const char *name, int selector, int length, const char *payload,
                        const char *status) {
        QTest::newRow(name) << selector << length << QByteArray::fromHex(payload)
                            << QByteArray::fromHex(status);
    };
    row("tracking off", 7, 60, "FF5305040100", "0000000100");
    row("board", 7, 60, "FF5305100102", "0001020100");
    row("sport", 7, 60, "FF5305070102", "0001000200");
    row("bodies", 7, 60, "FF5305130103", "0001000103");
    row("control", 8, 60, "FF5305040100", "");
    row("short", 7, 59, "FF5305040100", "");
    row("long", 7, 255, "FF5305040100", "");
    row("header", 7, 60, "FF5306040100", "");
    row("command", 7, 60, "FF5305050100", "");
    row("value length", 7, 60, "FF5305040200", "");
    row("value", 7, 60, "FF5305070103", "");
    row("value below", 7, 60, "FF5305070100", "");
}

void TestHost::commands()
{
    QFETCH(int, selector);
    QFETCH(int, length);
    QFETCH(QByteArray, payload);
    QFETCH(QByteArray, status);
    SimulatedCamera camera;
    CommandChannel channel(camera);
    QSignalSpy transfers(&channel, &CommandChannel::transferred);
    ExtensionUnit command;
    command.write = true;
    command.selector = selector;
    command.length = quint64(length);
    std::copy(payload.cbegin(), payload.cend(), command.data);
    channel.request(ChannelRequest::Extension, QVariant::fromValue(command));

    const auto shown = transfers.takeFirst().first().value<Transfer>();
    QCOMPARE(shown.meaning.startsWith("refused: "), status.isEmpty());

    ExtensionUnit read;
    read.selector = 8;
    const auto answer = channel.request(ChannelRequest::Extension, QVariant::fromValue(read))
                            .value<ExtensionUnit>();
    QCOMPARE(answer.length, quint64(60));
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(answer.data), 5).toHex(),
             status.isEmpty() ? QByteArray("0001000100") : status.toHex());
}

namespace {

struct Run
{
    int exitCode;
    QString output, errors;
};

Run runHost(const QStringList &arguments)
{
    QProcess host;
    host.start(QStringLiteral(ORVHOST), arguments);
    const bool finished = host.waitForFinished(60000);
    return {finished && host.exitStatus() == QProcess::NormalExit ? host.exitCode() : -1,
            QString::fromLocal8Bit(host.readAllStandardOutput()),
            QString::fromLocal8Bit(host.readAllStandardError())};
}

} // namespace

void TestHost::commandLine_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("says");
    QTest::newRow("help") << "--help" << 0 << "--status";
    QTest::newRow("version") << "--version" << 0 << "orvhost 1";
    QTest::newRow("unknown option") << "--colour" << 2 << "colour";
    QTest::newRow("an option of Qt's") << "--platform offscreen" << 2 << "platform";
    QTest::newRow("language") << "--language fr" << 2 << "en or zh";
    QTest::newRow("status: too few") << "--status 1,2" << 2 << "five numbers";
    QTest::newRow("status: too large") << "--status 0,1,2,3,256" << 2 << "five numbers";
    QTest::newRow("delay") << "--delay -1" << 2 << "--delay";
    QTest::newRow("dpi") << "--dpi many" << 2 << "--dpi";
    QTest::newRow("scale") << "--scale 0" << 2 << "--scale";
    QTest::newRow("no value") << "--screenshot" << 2 << "screenshot";
    QTest::newRow("two plug-ins") << "a b" << 2 << "Only one";
    QTest::newRow("missing file") << "nowhere.so" << 1 << "no such file";
    QTest::newRow("not a plug-in") << ORVHOST << 1 << "not a Qt plug-in";
    QTest::newRow("another interface") << OTHER_PLUGIN << 1 << "com.talsen.OrvPluginApi";
    QTest::newRow("picture not writable") << "--screenshot /nowhere/a.png" << 1 << "Cannot write";
}

void TestHost::commandLine()
{
    QFETCH(QString, arguments);
    QFETCH(QString, says);
    // A path stands alone, and may have spaces in it.
    const bool path = QFile::exists(arguments);
    const Run run = runHost(path ? QStringList(arguments) : arguments.split(' '));
    QTEST(run.exitCode, "exitCode");
    QVERIFY2((run.exitCode == 0 ? run.output : run.errors).contains(says), qPrintable(run.errors));
}

void TestHost::tour()
{
    const QTemporaryDir folder;
    const QString picture = folder.filePath("tour.png");
    const Run run = runHost({"--tour", "--screenshot", picture});
    QVERIFY2(run.exitCode == 0, qPrintable(run.output + run.errors));
    QVERIFY(run.output.contains("FF 53 05 10 01 02"));
    QVERIFY(!QImage(picture).isNull());
}

QTEST_GUILESS_MAIN(TestHost)
#include "tst_host.moc"
