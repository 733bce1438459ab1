#include "testmain.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

/// Runs orvcheck on panels with one fault each, and on panels without faults.
class TestCheck : public Test
{
    Q_OBJECT

    QProcess m_checker;
    QTemporaryDir m_folder;

    /// Runs orvcheck and returns its standard output. m_checker keeps its exit status and errors.
    QString check(const QStringList &arguments, const QString &fault = {})
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("FAULT", fault);
        if (fault == "hangs")
            environment.insert("ORVCHECK_TIME_LIMIT", "3");
        environment.remove("ASAN_OPTIONS"); // the options of the tests slow down orvcheck
        m_checker.setProcessEnvironment(environment);
        m_checker.start(ORVCHECK, arguments);
        return m_checker.waitForFinished(120000) ? m_checker.readAllStandardOutput() : "no end";
    }

    /// Copies the fixture and replaces `before` with `after`, which must have the same length.
    QString patched(const QByteArray &before, const QByteArray &after)
    {
        QFile source(FIXTURE);
        QFile copy(m_folder.filePath("patched.so"));
        if (!source.open(QIODevice::ReadOnly) || !copy.open(QIODevice::WriteOnly))
            return {};
        copy.write(source.readAll().replace(before, after));
        return copy.fileName();
    }

private Q_SLOTS:
    void soundPanelsPass()
    {
        const int checks = check({"--list"}).count('\n');
        for (const char *const habits :
             {"", "opens-dialog,watches-clock,is-always-due,waits,fills-cache,is-huge"}) {
            const QString printed = check({FIXTURE}, habits);
            QVERIFY2(checks > 0 && printed.count("\npassed ") == checks,
                     qPrintable(printed.mid(printed.indexOf("\nFAILED"))));
        }
    }

    void faultsAreFound_data()
    {
        QTest::addColumn<QString>("failed");
        QTest::addColumn<QString>("came");
        const std::array<const char *, 3> rows[] = {
            {"wrong-identifier", "loads", "com.talsen.OrvPluginApi"},
            {"foreign-qt", "loads", "it is built for Qt 5.99"},
            {"exports-too-much", "exports", "version script"},
            {"loads-slowly", "load-time", " ms"},
            {"says-it-passed", "opens", "exit with status 0, after \"passed\"; at: insertWidget"},
            {"hangs", "opens", "none within 3 s; at: insertWidget"},
            {"is-slow", "opens", " ms; at: insertWidget"},
            {"has-no-name", "identity", "an empty one"},
            {"crashes-with-window", "destruction", "(Aborted); at: destroying the window "},
            {"opens-dialog-on-stack", "dialogs", "; at: destroying the "},
            {"reads-too-early", "opening", "a read of control 8; at: loading"},
            {"writes-on-opening", "opening",
             "a write to control 7 (Tracking: on); at: insertWidget"},
            {"needs-layout", "containers", "none"},
            {"freezes-window", "thawed", "a frozen one"},
            {"leaves-widget", "leftovers", "name = \"left\""},
            {"removes-others", "leftovers", "items in the container's layout: 0"},
            {"renames-application", "leftovers", "applicationName"},
            {"quits", "leftovers", "quit()"},
            {"sends-after-death", "after-death", "a read of control 8"},
            {"sends-in-destructor", "after-death",
             "a write to control 7 (Tracking: on); at: destr"},
            {"leaks", "lives", "more widgets in "},
#ifndef __SANITIZE_ADDRESS__ // whose allocator does not report the memory in use
            {"leaks-large-block", "lives", "more bytes of memory in "},
            {"grows", "long-life", "more bytes of memory in "},
#endif
            {"sends-tail", "requests", "bytes beyond the value); at: "},
            {"calls-from-thread", "requests", "a read of control 8 (on another thread)"},
            {"echoes", "quiet", "a write to control 7 (Tracking: o"},
            {"repeats-choice", "quiet", "a write to control 7 (Tracking: o"},
            {"crashes-on-empty-answer", "answers", "at: insertWidget(), answers that are missing"},
            {"writes-defaults", "answers", "a write to control 7 (Tracking: on)"},
            {"trusts-length", "answers", "answers that are too long"},
            {"is-not-reentrant", "clicks", "(Aborted); at: "},
            {"crashes-in-dialog", "random-use", "on QPushButton"},
            {"crashes-in-the-long-run", "random-use", "a crash (Aborted); at: "},
        };
        for (const auto &[fault, failed, came] : rows)
            QTest::newRow(fault) << failed << came;
    }

    void faultsAreFound()
    {
        QFETCH(QString, failed);
        QFETCH(QString, came);
        const QByteArray fault = QTest::currentDataTag();
        QString plugin = FIXTURE;
        if (fault == "exports-too-much")
            plugin = FIXTURE_BROKEN;
        if (fault == "wrong-identifier")
            plugin = patched("wcom.talsen.OrvPluginApi", "wcom.talsen.OrvPluginApj");
        if (fault == "foreign-qt")
            plugin = patched(QByteArray("QTMETADATA !\0\5\17", 15),
                             QByteArray("QTMETADATA !\0\5\143", 15));

        const QStringList arguments{"--only", failed, "--seed", "1", plugin};
        const QString printed = check(arguments, fault);
        QVERIFY2(printed.contains("\nFAILED          " + failed) && printed.contains(came),
                 qPrintable(printed));
        QCOMPARE(m_checker.exitCode(), 1);
        if (failed == "random-use") // the same seed must repeat the run
            QCOMPARE(check(arguments, fault), printed);
    }

    void checksAreChosen()
    {
        // Checks that need a failed one are skipped.
        const QString all = check({FIXTURE_BROKEN});
        const int checks = check({"--list"}).count('\n');
        QVERIFY2(all.contains("\nFAILED          loads") && all.contains("missing") &&
                     all.count("\nskipped ") == checks - 1,
                 qPrintable(all));
        const QString some = check({"--skip", "loads", "--only", "loads", "--only", "exports",
                                    "--skip", "opens", FIXTURE});
        QVERIFY2(some.contains("\npassed          exports") && some.count('\n') == 2,
                 qPrintable(some));
        QCOMPARE(m_checker.exitCode(), 0);
        QVERIFY(check({"--check", "thawed", FIXTURE, "1"}, "freezes-window")
                    .contains("\ncame a frozen one"));
        QCOMPARE(m_checker.exitCode(), 1);
    }

    void badArguments()
    {
        const std::pair<QStringList, const char *> rows[] = {
            {{}, "Give one plug-in"},
            {{"/nowhere.so"}, "There is no file \"/nowhere.so\"."},
            {{"--skip", "nothing", FIXTURE}, "There is no check \"nothing\""},
            {{"--seed", "x", FIXTURE}, "--seed takes a whole number"},
            {{"--check", "nothing", FIXTURE, "1"}, "--check takes the name of a check"},
            {{"--what"}, "Unknown option 'what'"},
        };
        for (const auto &[arguments, complaint] : rows) {
            check(arguments);
            QVERIFY2(m_checker.readAllStandardError().contains(complaint), complaint);
            QCOMPARE(m_checker.exitCode(), 2);
        }
    }
};

TEST_MAIN(TestCheck)
#include "tst_check.moc"
