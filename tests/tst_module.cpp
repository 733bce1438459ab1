#include "orvpluginapi.h"

#include <QApplication>
#include <QFile>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QProcess>
#include <QScopedPointer>
#include <QTest>

/// The built module, loaded as a host does.
class TestModule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaData();
    void exports();
    void instance();
    void unloadedForReal();
};

namespace {

const QString module = QStringLiteral(M24_MODULE);

} // namespace

void TestModule::metaData()
{
    const QJsonObject metaData = QPluginLoader(module).metaData();
    QCOMPARE(metaData.value("IID").toString(), QStringLiteral("com.talsen.OrvPluginApi"));
    QCOMPARE(metaData.value("className").toString(), QStringLiteral("ControlTrackingPlugin"));
    QCOMPARE(metaData.value("version").toInt(), QT_VERSION & 0xFFFF00);
    QVERIFY(!metaData.contains("MetaData") || metaData.value("MetaData").toObject().isEmpty());
#ifdef QT_NO_DEBUG
    QCOMPARE(metaData.value("debug").toBool(), false);
#endif
    QVERIFY(!QFile::exists(":/Plugins/m24_tracking_en_US.qm")); // nothing of it has run
}

void TestModule::exports()
{
    QProcess nm;
    nm.start("nm", {"-D", "--defined-only", "--format=posix", module});
    QVERIFY(nm.waitForFinished());
    QStringList names;
    const auto lines = QString::fromLatin1(nm.readAllStandardOutput()).trimmed().split('\n');
    for (const QString &line : lines)
        names << line.section(' ', 0, 0);
    names.sort();
    QCOMPARE(names, QStringList({"qt_plugin_instance", "qt_plugin_query_metadata"}));
}

void TestModule::instance()
{
    QPluginLoader loader(module);
    QVERIFY2(loader.load(), qPrintable(loader.errorString()));
    for (const char *path : {":/Plugins/m24_tracking_en_US.qm", ":/Plugins/m24_tracking_zh_CN.qm",
                             ":/UI/icon_limitarea.svg", ":/UI/icon_limitarea_checked.svg"})
        QVERIFY2(QFile::exists(path), path);

    QObject *const first = loader.instance();
    QVERIFY(qobject_cast<QWidget *>(first));
    QCOMPARE(loader.instance(), first);
    auto *const api = qobject_cast<OrvPluginApi *>(first);
    QVERIFY(api);
    QCOMPARE(first->qt_metacast("OrvPluginApi"), first->qt_metacast("com.talsen.OrvPluginApi"));
    QVERIFY(!first->qt_metacast("SomeOtherApi"));
    QCOMPARE(api->name(), QStringLiteral("m24_tracking"));
    QCOMPARE(api->category(), 0);

    delete first;
    QScopedPointer<QObject> second(loader.instance());
    QVERIFY(qobject_cast<OrvPluginApi *>(second.data()));
}

// A host that takes back the default of keeping libraries: what is installed and due stays sound.
void TestModule::unloadedForReal()
{
    QWidget window;
    QPluginLoader loader(module);
    loader.setLoadHints({});
    auto *const api = qobject_cast<OrvPluginApi *>(loader.instance());
    QVERIFY(api);
    QVariant kept;
    api->commandChannel = [&kept](int, const QVariant &record) {
        kept = record;
        return QVariant(1);
    };
    api->insertWidget(&window);
    delete loader.instance();
    while (loader.unload()) {
    }
    QVERIFY(kept.canConvert<ExtensionUnit>());
    kept = QVariant();
    QCOMPARE(QCoreApplication::translate("root", "hand"), QStringLiteral("Hand"));
    QTest::qWait(3300); // the moment at which polling would have started
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    TestModule test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_module.moc"
