#include "testmain.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>

/// The checker of panels, run on panels that are broken in one way each, and on sound ones.
class TestCheck : public Test
{
    Q_OBJECT

    QProcess m_checker;
    QTemporaryDir m_folder;

    /// What the checker printed; its exit status is left in m_checker.
    QString check(const QStringList &arguments, const QByteArray &fault = {})
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("FAULT", fault);
        environment.remove("ASAN_OPTIONS"); // slow ones, for what the tests leak
        m_checker.setProcessEnvironment(environment);
        m_checker.start(ORVCHECK, arguments);
        return m_checker.waitForFinished(120000) ? m_checker.readAllStandardOutput() : "no end";
    }

    /// A copy of the fixture with other bytes of the same length in it.
    QString patched(const QByteArray &before, const QByteArray &after)
    {
        QFile source(FIXTURE);
        QFile copy(m_folder.filePath("patched.so"));
        if (!source.open(QIODevice::ReadOnly) || !copy.open(QIODevice::WriteOnly))
            return {};
        QByteArray bytes = source.readAll();
        const int place = bytes.indexOf(before);
        if (place < 0)
            return {};
        copy.write(bytes.replace(place, before.size(), after));
        return copy.fileName();
    }

private Q_SLOTS:
    void faultsAreFound_data()
    {
        QTest::addColumn<QString>("plugin");
        QTest::addColumn<QString>("failed");
        QTest::addColumn<QString>("came");
        const auto row = [](const char *fault, const QString &failed, const QString &came,
                            const QString &plugin = FIXTURE) {
            QTest::newRow(fault) << plugin << failed << came;
        };
        row("none", {}, {});
        for (const char *const none : {"opens-dialog", "watches-clock", "is-always-due"})
            row(none, {}, {});
        row("none, and this project's panel", {}, {}, M24_MODULE);
        row("wrong-identifier", "metadata", "com.talsen.OrvPluginApi");
        row("foreign-qt", "qt-version", "it is built for Qt 5.99");
        row("exports-too-much", "exports", "exported", FIXTURE_EXPORTING);
        row("misses-symbol", "symbols", "missing", FIXTURE_MISSING);
        row("loads-slowly", "load-time", " ms");
        row("has-no-name", "identity", "an empty one");
        row("says-it-passed", "opens", "an exit with status 0, after \"passed\"; at: insertWidget");
        row("hangs", "opens", "none within 30 s; at: insertWidget");
        row("crashes-with-window", "destruction", "a crash (Aborted); at: destroying the window, ");
        row("writes-on-opening", "opening", "a write to control 7 (Tracking: on)");
        row("needs-layout", "containers", "none");
        row("freezes-window", "thawed", "a frozen one");
        row("leaves-widget", "leftovers", "name = \"left\"");
        row("sends-after-death", "after-death", "a read of control 8");
        row("leaks", "lives", "100 more widgets after 100 lives");
        row("sends-tail", "requests", "bytes beyond the value); at: ");
        row("echoes", "quiet", "a write to control 7 (Tracking: o");
        row("calls-from-thread", "gui-thread", "a read of control 8 on another thread");
        row("crashes-on-empty-answer", "answers",
            "a crash (Aborted); at: answers that are missing");
        row("crashes-in-the-long-run", "random-use", "a crash (Aborted); at: ");
    }

    // Each by the check that is meant for it, and by no other.
    void faultsAreFound()
    {
        QFETCH(QString, plugin);
        QFETCH(QString, failed);
        QFETCH(QString, came);
        const QByteArray fault = QTest::currentDataTag();
        if (fault == "wrong-identifier")
            plugin = patched("wcom.talsen.OrvPluginApi", "wcom.talsen.OrvPluginApj");
        if (fault == "foreign-qt")
            plugin = patched(QByteArray("QTMETADATA !\0\5\17", 15),
                             QByteArray("QTMETADATA !\0\5\143", 15));

        const QString printed = check({"--seed", "1", plugin}, fault);
        QStringList failures;
        const auto lines = printed.split('\n');
        for (const QString &line : lines) {
            if (line.startsWith("FAILED"))
                failures << line.simplified().section(' ', 1, 1);
        }
        QVERIFY2(failures.join(' ') == failed && printed.contains(came), qPrintable(printed));
        QCOMPARE(m_checker.exitCode(), failed.isEmpty() ? 0 : 1);
    }

    void seedsReplay()
    {
        const QStringList arguments{"--only", "random-use", "--seed", "1", FIXTURE};
        const QString first = check(arguments, "crashes-in-the-long-run");
        QVERIFY2(first.contains("a crash"), qPrintable(first));
        QCOMPARE(check(arguments, "crashes-in-the-long-run"), first);
    }

    void reportsAsJUnitDoes()
    {
        const QString file = m_folder.filePath("report.xml");
        check({"--junit", file, FIXTURE_MISSING});
        QFile report(file);
        QVERIFY(report.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&report);
        QVERIFY(xml.readNextStartElement());
        QCOMPARE(xml.attributes().value("failures"), QStringLiteral("1"));
        QMap<QString, int> elements;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement)
                ++elements[xml.name().toString()];
        }
        const int checks = check({"--list"}).count('\n');
        QCOMPARE(elements, (QMap<QString, int>{
                               {"testcase", checks}, {"failure", 1}, {"skipped", checks - 4}}));
    }

    void badArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("complaint");
        const auto row = [](const QStringList &arguments, const char *complaint) {
            QTest::newRow(complaint) << arguments << QByteArray(complaint);
        };
        row({}, "One plug-in, please");
        row({FIXTURE, FIXTURE}, "One plug-in, please");
        row({"/nowhere.so"}, "There is no file \"/nowhere.so\".");
        row({"--only", "nothing", FIXTURE}, "There is no check \"nothing\"");
        row({"--seed", "x", FIXTURE}, "--seed takes a whole number");
        row({"--what"}, "Unknown option 'what'");
    }

    void badArguments()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, complaint);
        check(arguments);
        QCOMPARE(m_checker.exitCode(), 2);
        QVERIFY(m_checker.readAllStandardError().contains(complaint));
    }
};

TEST_MAIN(TestCheck)
#include "tst_check.moc"
