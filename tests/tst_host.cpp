#include "commandchannel.h"
#include "hostwindow.h"
#include "language.h"
#include "pluginfile.h"
#include "session.h"
#include "simulatedcamera.h"
#include "testmain.h"
#include "transferqueue.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QFile>
#include <QLayout>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
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

} // namespace

/// The reference host as a user starts it.
class TestHost : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void program()
    {
        const QTemporaryDir folder;
        const struct
        {
            const char *arguments;
            int exitCode;
            const char *says;
        } rows[] = {
            {"--help", 0, "--status"},
            {"-platform offscreen", 2, "Unknown option 'platform'"}, // Qt's options are refused
            {"--language fr", 2, "en or zh"},
            {"--status 0,1,2,3,256", 2, "five numbers"},
            {"--fault broken", 2, "changes-itself"},
            {"--fault delay=10001", 2, "delay=0..10000"},
            {"--fault errno=ENOENT", 2, "EPIPE"},
            {"--unit 3", 2, "--unit needs --camera"},
            {"--camera /dev/video0 --unit 256", 2, "from 1 to 255"},
            {"--camera /dev/video0 --status 0,1,0,1,0", 2, "cannot be combined"},
            {"--camera /nowhere --unit=3 --read-only", 1, "/nowhere"},
            {"--trace=", 2, "name of a file"},
            {"--trace /nowhere/a", 1, "Cannot write the trace"},
            {"--trace /dev/full --screenshot FOLDER/a.png", 1, "No space"},
            {"--tour --screenshot /nowhere/a.png", 1, "Cannot write the picture"},
            {"--screenshot a.jsonl", 1, ".png"},
            {"--tour PANEL", 1, "\"AI Tracking\""},
            {"a b", 2, "Only one"},
            {"nowhere.so", 1, "no such file"},
            {"/", 1, "it is a folder"},
            {"PROGRAM", 1, "not a Qt plug-in"},
            {"PLUGIN", 1, "com.talsen.OrvPluginApi"},
        };
        for (const auto &row : rows) {
            QStringList arguments = QString(row.arguments).split(' ');
            arguments.replaceInStrings("FOLDER", folder.path());
            arguments.replaceInStrings("PANEL", FIXTURE_PANEL);
            arguments.replaceInStrings("PROGRAM", ORVHOST);
            arguments.replaceInStrings("PLUGIN", OTHER_PLUGIN);
            Host host(arguments);
            QCOMPARE(host.exitCode(), row.exitCode);
            QVERIFY2(host.output.contains(row.says), qPrintable(host.output));
        }
    }

    void window()
    {
        Language::install(0);
        const auto camera = std::make_shared<SimulatedCamera>();
        TransferQueue queue(camera);
        CommandChannel channel(queue);
        HostWindow window(queue, channel, camera.get());
        QVERIFY(window.minimumSizeHint().width() <= 1240);
        auto *const panel = new QPushButton;
        window.panelContainer()->layout()->addWidget(panel);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));

        auto *const type = window.findChildren<QComboBox *>().at(1);
        QCOMPARE(type->currentText(), "常规");
        QTest::keyClick(&window, Qt::Key_Backtab);
        const QWidgetList order{panel, window.findChild<QWidget *>("pb_reset"),
                                window.findChildren<QComboBox *>().at(0)};
        for (QWidget *const next : order) {
            QTest::keyClick(&window, Qt::Key_Tab);
            QCOMPARE(window.focusWidget(), next);
        }

        // An open list keeps the user's choice. The offscreen platform warns about its limits.
        expectedWarnings.setPattern("^This plugin does not support");
        type->showPopup();
        QTest::keyClick(type->view(), Qt::Key_Down);
        camera->setValue(TrackingProtocol::Type, 9);
        QTRY_COMPARE(type->count(), 4);
        camera->setValue(TrackingProtocol::Type, 0);
        QTRY_COMPARE(type->count(), 3); // an unknown value is offered only while it lasts
        QTest::keyClick(type->view(), Qt::Key_Return);
        QCOMPARE(camera->status().at(TrackingProtocol::Type), 1);
    }

    void newPanel()
    {
        const auto camera = std::make_shared<SimulatedCamera>();
        Session session(camera, Camera::ReadWrite, PluginFile::load(TRACKING_PLUGIN), 1);
        HostWindow window(session.queue(), session.channel(), camera.get());
        const QSignalSpy created(&session, &Session::panelCreated);
        session.showPanelIn(window.panelContainer());
        QTRY_COMPARE(created.size(), 1);
        const auto showsSport = [&window] {
            const auto *const button = window.findChild<QAbstractButton *>("rb_sport");
            return button && button->isChecked();
        };
        QVERIFY(!showsSport());

        // The camera comes back with other settings.
        Faults faults = noFaults;
        faults[Fault::Unplugged] = 1;
        camera->setFaults(faults);
        QTRY_COMPARE(session.queue().condition().state, CameraCondition::Refused);
        camera->setValue(TrackingProtocol::Mode, 2);
        camera->setFaults(noFaults);
        QTRY_COMPARE(created.size(), 2);
        QVERIFY(showsSport());

        // The user asks for a new panel after a command failed.
        const auto failures = [&] {
            return session.queue().condition().failedCommands.size();
        };
        faults = noFaults;
        faults[Fault::RefuseWrites] = 1;
        camera->setFaults(faults);
        window.findChild<QAbstractButton *>("rb_hand")->click();
        QTRY_COMPARE(failures(), 1U);
        camera->setValue(TrackingProtocol::Mode, 1);
        session.renewPanel();
        QCOMPARE(failures(), 0U);
        QVERIFY(!window.findChild<QAbstractButton *>("rb_sport"));
        session.renewPanel(); // already on its way
        QTRY_COMPARE(created.size(), 3);
        QVERIFY(!showsSport());
    }

    void closedStream()
    {
        QProcess host;
        host.start("sh", {"-c", R"(exec "$0" >&-)", ORVHOST});
        const QString output = QString("/proc/%1/fd/1").arg(host.processId());
        QTRY_COMPARE(QFile::symLinkTarget(output), QString("/dev/null"));
        host.kill();
        host.waitForFinished();
    }

    void tours()
    {
        const QTemporaryDir folder;
        const QString picture = folder.filePath("tour.png");
        const QString trace = folder.filePath("trace");
        // Run both at the same time. Each takes several seconds, mostly waiting.
        Host slow({"--tour", "--fault", "delay=100", "--status", "0,0,1,2,3", "--screenshot",
                   picture, "--trace", trace});
        Host unplugged({"--tour", "--fault", "unplugged", "--language", "zh"});
        Host ended({"--tour"});
        QTRY_VERIFY_WITH_TIMEOUT(ended.process.peek(10000).contains("1. "), 60000);
        ended.process.terminate();
        QCOMPARE(ended.exitCode(), 1); // not a crash

        QCOMPARE(unplugged.exitCode(), 1);
        QVERIFY(unplugged.output.contains("language: 0"));
        QVERIFY(unplugged.output.contains("DIFFERENT: the camera has reported nothing"));

        QCOMPARE(slow.exitCode(), 0);
        for (const char *const words : {"00 00 01 02 03 00  tracking off, type Hand, mode Sport",
                                        "FF 53 05 10 01 02  Type: Board"})
            QVERIFY2(slow.output.contains(words), qPrintable(slow.output));
        static const QRegularExpression stall("longest stall of the window: [1-9]");
        QVERIFY(slow.output.contains(stall));
        QFile lines(trace);
        QVERIFY(lines.open(QIODevice::ReadOnly));
        QVERIFY(lines.readAll().contains(R"("result":"superseded")"));
        QVERIFY(!QImage(picture).isNull());
    }
};

TEST_MAIN(TestHost)
#include "tst_host.moc"
