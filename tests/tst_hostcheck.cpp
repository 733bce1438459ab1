#include "orvpluginapi.h"
#include "panelwindow.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QPluginLoader>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <memory>
#include <thread>

using namespace std::chrono_literals;

/// Loads orv_hostcheck in hosts that each have one fault. Only the line for that fault must fail.
class TestHostCheck : public Test
{
    Q_OBJECT

    static void listen(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (qstrcmp(context.category, "orv_hostcheck") == 0)
            lines << message;
        else
            usualHandler(type, context, message);
    }

    static inline QStringList lines; // that the panel has logged
    static inline QtMessageHandler usualHandler = nullptr;

    /// Whether this row has the fault.
    static bool is(const char *fault) { return qstrcmp(QTest::currentDataTag(), fault) == 0; }

    QVariant answer(int kind, const QVariant &record)
    {
        if (kind == ChannelRequest::Setting) {
            if (record.value<SettingData>().name != "language")
                return {};
            return is("language as text") ? QVariant("1") : QVariant(1);
        }
        auto unit = record.value<ExtensionUnit>();
        m_hasWritten =
            m_hasWritten || kind != ChannelRequest::Extension || unit.write || unit.selector != 8;
        if (is("foreign record"))
            return QVariant::fromValue(SettingData());
        if (is("slow"))
            VirtualTime::now += 1100ms;
        unit.selector = is("selector 7") ? 7 : 8;
        unit.length = is("length 300") ? 300 : 60;
        unit.data[254] = is("leftovers") ? 1 : 0;
        return QVariant::fromValue(unit);
    }

    bool m_hasWritten = false;

private Q_SLOTS:
    void referenceHost()
    {
        const QTemporaryDir folder;
        QProcess host;
        host.setProcessChannelMode(QProcess::MergedChannels);
        host.start(ORVHOST, {HOSTCHECK, "--screenshot", folder.filePath("a.png")});
        QVERIFY(host.waitForFinished(60000));
        const QByteArray output = host.readAll();
        const QByteArray end = output.mid(output.indexOf("At the end:"));
        QVERIFY2(end.count(" passed: ") == 11, output);
    }

    void hosts_data()
    {
        // The lines that do not pass, as a regular expression.
        QTest::addColumn<QString>("expected");
        const std::pair<const char *, const char *> rows[] = {
            {"deletes the container", ""},
            {"language as text", "failed: The answer to the setting \"language\".*QString"},
            {"foreign record", "failed: The answer to a read.*SettingData"},
            {"selector 7", "failed: The answer to a read.*selector 7, length 60"},
            {"length 300", "failed: The answer to a read.*selector 8, length 300"},
            {"leftovers", "failed: The answer to a read.*length 60, other bytes beyond it"},
            {"slow", "failed: Every answer.*longest took 1[0-9]{3} ms.*"},
            {"channel late", "failed: The channel.*"},
            {"inserts twice", "failed: insertWidget.*there is no container"},
            {"never shows", "not yet seen: insertWidget.*\nnot yet seen: A frozen window.*"},
            {"resets before", "failed: resetToDefault.*"},
            {"stores in a thread", "failed: Every call.*getCurrentParams came on another thread"},
            {"creates in a thread", "failed: Every call.*the constructor came on another thread"},
            {"inserts in a thread", "failed: Every call.*insertWidget came on another thread"},
            {"deletes in a thread", "failed: Every call.*the destructor came on another thread"},
            {"no pictures", "failed: The pictures.*img_tracking_half.svg.*icon_delete_hover.svg.*"},
            {"keeps frozen", "failed: A frozen window.*"},
        };
        for (const auto &[host, expected] : rows)
            QTest::newRow(host) << expected;
    }

    void hosts()
    {
        QFETCH(QString, expected);
        VirtualTime::start();
        lines.clear();
        usualHandler = qInstallMessageHandler(listen);
        const auto restore = qScopeGuard([] { qInstallMessageHandler(usualHandler); });
        if (is("no pictures"))
            Q_CLEANUP_RESOURCE(host);
        const auto pictures = qScopeGuard([] { Q_INIT_RESOURCE(host); });
        const auto inThread = [&](const char *fault, const std::function<void()> &action) {
            is(fault) ? std::thread(action).join() : action();
        };
        QPluginLoader loader(HOSTCHECK);
        QObject *panel = nullptr;
        inThread("creates in a thread", [&] { panel = loader.instance(); });
        auto *const api = qobject_cast<OrvPluginApi *>(panel);
        QVERIFY2(api, qPrintable(loader.errorString()));
        auto host = std::make_unique<PanelWindow>();
        m_hasWritten = false;
        const auto channel = [this](int kind, const QVariant &record) {
            return answer(kind, record);
        };
        QTimer freezer;
        connect(&freezer, &QTimer::timeout, host->container,
                [&] { host->window.setUpdatesEnabled(false); });

        if (is("resets before"))
            api->resetToDefault();
        if (!is("channel late"))
            api->commandChannel = channel;
        inThread("inserts in a thread", [&] { api->insertWidget(host->container); });
        api->commandChannel = channel;
        if (is("inserts twice"))
            api->insertWidget(nullptr);
        if (!is("never shows"))
            host->window.show();
        if (is("keeps frozen"))
            freezer.start(10);
        VirtualTime::advance(2s);
        api->resetToDefault();
        inThread("stores in a thread", [&] { api->getCurrentParams(); });
        if (!is("deletes the container"))
            inThread("deletes in a thread", [&] { delete panel; });
        host.reset();

        const int end = lines.size() - 12;
        QVERIFY2(lines.value(end).startsWith("At the end:"), qPrintable(lines.join('\n')));
        const QStringList others = lines.mid(end + 1).filter(QRegularExpression("^(?!passed: )"));
        QVERIFY2(QRegularExpression('^' + expected + '$').match(others.join('\n')).hasMatch(),
                 qPrintable(lines.join('\n')));
        QVERIFY(!m_hasWritten);
    }
};

TEST_MAIN(TestHostCheck)
#include "tst_hostcheck.moc"
