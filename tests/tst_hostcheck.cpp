#include "orvpluginapi.h"
#include "testmain.h"

#include <QPluginLoader>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QThread>

#include <memory>
#include <thread>

/// The panel that checks hosts: in a sound host every line passes; in one that is broken in one way
/// the line for that does not, and all others do.
class TestHostCheck : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void hosts_data();
    void hosts();
    void referenceHost();

private:
    static void listen(QtMsgType type, const QMessageLogContext &context, const QString &message);
    static bool hasSaid(const QString &words)
    {
        return !said.filter(QRegularExpression(words)).isEmpty();
    }

    static inline QStringList said; // by the panel, since the row began
    static inline QtMessageHandler handlerOfTests = nullptr;
};

void TestHostCheck::listen(QtMsgType type, const QMessageLogContext &context,
                           const QString &message)
{
    if (qstrcmp(context.category, "orv_hostcheck") == 0)
        said << message;
    else
        handlerOfTests(type, context, message);
}

void TestHostCheck::hosts_data()
{
    QTest::addColumn<QString>("says"); // the lines that do not pass, as a regular expression
    const std::pair<const char *, const char *> rows[] = {
        {"sound", ""},
        {"deletes the container", ""},
        {"no language", "failed: The setting \"language\".*came no value"},
        {"language as text", "failed: The setting \"language\".*came QString"},
        {"foreign record", "failed: A get of.*came SettingData"},
        {"selector 7", "failed: A get of.*came selector 7, length 60"},
        {"length 300", "failed: A get of.*came selector 8, length 300"},
        {"leftovers", "failed: A get of.*came selector 8, length 60, other bytes beyond it"},
        {"slow", "failed: Every answer.*longest 1[0-9]{3} ms.*"},
        {"channel late", "failed: The channel.*came none"},
        {"takes the channel away", "failed: The channel.*came none"},
        {"inserts twice", "failed: insertWidget.*came call 2"},
        {"never shows", "not yet seen: insertWidget.*\nnot yet seen: A frozen window.*"},
        {"resets before", "failed: resetToDefault.*"},
        {"name in a thread", "failed: Every call.*name came on another"},
        {"stores in a thread, ends", "failed: Every call.*getCurrentParams came on another"},
        {"keeps frozen", "failed: A frozen window.*still frozen 400 ms later"},
    };
    for (const auto &[host, says] : rows)
        QTest::newRow(host) << says;
}

void TestHostCheck::hosts()
{
    QFETCH(QString, says);
    const auto is = [](const char *fault) {
        return qstrcmp(QTest::currentDataTag(), fault) == 0;
    };
    said.clear();
    handlerOfTests = qInstallMessageHandler(listen);
    const auto silence = qScopeGuard([] { qInstallMessageHandler(handlerOfTests); });
    QPluginLoader loader(QStringLiteral(HOSTCHECK));
    QObject *const panel = loader.instance();
    auto *const api = qobject_cast<OrvPluginApi *>(panel);
    QVERIFY2(api, qPrintable(loader.errorString()));
    auto window = std::make_unique<QWidget>();
    auto *const container = new QWidget(window.get());
    bool sent = false;
    const auto channel = [&](int kind, const QVariant &record) -> QVariant {
        if (kind == ChannelRequest::Setting) {
            if (record.value<SettingData>().name != "language" || is("no language"))
                return {};
            return is("language as text") ? QVariant("1") : QVariant(1);
        }
        auto unit = record.value<ExtensionUnit>();
        sent = sent || kind != ChannelRequest::Extension || unit.write || unit.selector != 8;
        if (is("foreign record"))
            return QVariant::fromValue(SettingData());
        if (is("slow"))
            QThread::msleep(1100);
        unit.selector = is("selector 7") ? 7 : 8;
        unit.length = is("length 300") ? 300 : 60;
        unit.data[254] = is("leftovers") ? 1 : 0;
        return QVariant::fromValue(unit);
    };
    QTimer freezer;
    connect(&freezer, &QTimer::timeout, container, [&] { window->setUpdatesEnabled(false); });

    if (is("resets before"))
        api->resetToDefault();
    if (!is("channel late"))
        api->commandChannel = channel;
    api->insertWidget(container);
    api->commandChannel = channel;
    if (is("inserts twice"))
        api->insertWidget(container);
    if (!is("never shows"))
        window->show();
    if (is("keeps frozen"))
        freezer.start(10);
    if (is("name in a thread"))
        std::thread([api] { api->name(); }).join();
    QTRY_VERIFY(hasSaid("A get of") && hasSaid("A frozen window") != is("never shows"));
    if (is("takes the channel away")) {
        api->commandChannel = nullptr;
        QTRY_VERIFY(hasSaid(says));
    }
    api->resetToDefault();
    if (is("stores in a thread, ends"))
        std::thread([api] { api->getCurrentParams(); }).join();
    if (!is("deletes the container"))
        delete panel;
    window.reset();

    const int end = said.size() - 11;
    QVERIFY2(said.value(end).startsWith("At the end "), qPrintable(said.join('\n')));
    const QStringList others = said.mid(end + 1).filter(QRegularExpression("^(?!passed: )"));
    QVERIFY2(QRegularExpression('^' + says + '$').match(others.join('\n')).hasMatch(),
             qPrintable(said.join('\n')));
    QVERIFY(!sent);
}

/// The host of this project, as its user starts it and closes it.
void TestHostCheck::referenceHost()
{
    const QTemporaryDir folder;
    QProcess host;
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.start(ORVHOST, {HOSTCHECK, "--screenshot", folder.filePath("a.png")});
    QVERIFY(host.waitForFinished(60000));
    const QByteArray output = host.readAll();
    QVERIFY2(output.contains("At the end 10 passed, 0 failed, 0 not yet seen"), output);
}

TEST_MAIN(TestHostCheck)
#include "tst_hostcheck.moc"
