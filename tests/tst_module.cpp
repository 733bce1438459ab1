#include "orvpluginapi.h"
#include "testmain.h"

#include <QJsonObject>
#include <QPluginLoader>

static const QString module = QStringLiteral(M24_MODULE);

/// The built module, loaded as a host does.
class TestModule : public Test
{
    Q_OBJECT

private Q_SLOTS:
    // A host that takes back the default of keeping libraries: what is installed and due stays
    // sound.
    void usedAndUnloaded()
    {
        QWidget window;
        QPluginLoader loader(module);
        loader.setLoadHints({});
        delete loader.instance(); // the next one is new
        auto *const api = qobject_cast<OrvPluginApi *>(loader.instance());
        QVERIFY2(api, qPrintable(loader.errorString()));
        QCOMPARE(loader.metaData().value("IID"), QJsonValue("com.talsen.OrvPluginApi"));
        QCOMPARE(api->name(), QStringLiteral("m24_tracking"));
        QCOMPARE(api->category(), 0);
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
};

TEST_MAIN(TestModule)
#include "tst_module.moc"
