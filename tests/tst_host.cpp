#include "commandchannel.h"
#include "simulatedcamera.h"
#include "testmain.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

/// The simulated camera, and the reference host as a user starts it.
class TestHost : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void commands();
    void commandLine();
    void tour();
};

void TestHost::commands()
{
    // Control, length and bytes of a command, and the status after it; none: it is refused.
    const std::tuple<int, int, const char *, const char *> rows[] = {
        {7, 60, "FF5305040100", "0000000100"}, {7, 60, "FF5305100102", "0001020100"},
        {7, 60, "FF5305070102", "0001000200"}, {7, 60, "FF5305130103", "0001000103"},
        {8, 60, "FF5305040100", nullptr},      {7, 255, "FF5305040100", nullptr},
        {7, 60, "FF5306040100", nullptr},      {7, 60, "FF5305050100", nullptr},
        {7, 60, "FF5305040200", nullptr},      {7, 60, "FF5305070103", nullptr},
        {7, 60, "FF5305070100", nullptr}};
    for (const auto &[selector, length, bytes, status] : rows) {
        SimulatedCamera camera;
        CommandChannel channel(camera);
        QSignalSpy transfers(&channel, &CommandChannel::transferred);
        ExtensionUnit command;
        command.write = true;
        command.selector = selector;
        command.length = quint64(length);
        const QByteArray payload = QByteArray::fromHex(bytes);
        std::copy(payload.cbegin(), payload.cend(), command.data);
        channel.request(ChannelRequest::Extension, QVariant::fromValue(command));
        const auto shown = transfers.takeFirst().first().value<Transfer>();
        QVERIFY2(shown.meaning.startsWith("refused: ") == !status, qPrintable(shown.meaning));

        ExtensionUnit read;
        read.selector = 8;
        const QVariant answer =
            channel.request(ChannelRequest::Extension, QVariant::fromValue(read));
        const auto unit = answer.value<ExtensionUnit>();
        QCOMPARE(unit.length, quint64(60));
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(unit.data), 5).toHex(),
                 QByteArray(status ? status : "0001000100"));
    }
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

void TestHost::commandLine()
{
    const std::tuple<const char *, int, const char *> rows[] = {
        {"--help", 0, "--status"},
        {"--version", 0, "orvhost 1"},
        {"--platform offscreen", 2, "platform"}, // Qt's own options are none of this program's
        {"--language fr", 2, "en or zh"},
        {"--status 1,2", 2, "five numbers"},
        {"--status 0,1,2,3,256", 2, "five numbers"},
        {"--delay -1", 2, "--delay"},
        {"--dpi many", 2, "--dpi"},
        {"--scale 0", 2, "--scale"},
        {"a b", 2, "Only one"},
        {"nowhere.so", 1, "no such file"},
        {ORVHOST, 1, "not a Qt plug-in"},
        {OTHER_PLUGIN, 1, "com.talsen.OrvPluginApi"},
        {"--screenshot /nowhere/a.png", 1, "Cannot write"},
    };
    for (const auto &[arguments, exitCode, says] : rows) {
        // A path stands alone, and may have spaces in it.
        const QString text(arguments);
        const auto [code, output] =
            runHost(QFile::exists(text) ? QStringList(text) : text.split(' '));
        QVERIFY2(code == exitCode && output.contains(says), qPrintable(text + ": " + output));
    }
}

void TestHost::tour()
{
    const QTemporaryDir folder;
    const QString picture = folder.filePath("tour.png");
    const auto [code, output] = runHost({"--tour", "--screenshot", picture});
    QVERIFY2(code == 0 && output.contains("FF 53 05 10 01 02"), qPrintable(output));
    QVERIFY(!QImage(picture).isNull());
}

TEST_MAIN(TestHost)
#include "tst_host.moc"
