#include "orvpluginapi.h"
#include "testmain.h"

#include <QPluginLoader>

static const char module[] = M24_MODULE;

/// The interface, and the built module.
class TestModule : public Test
{
    Q_OBJECT

private Q_SLOTS:
    // Hosts that were built earlier call by slot number.
    void interfaceIsStable()
    {
        int due = 0;
        const auto isNext = [&due](auto operation) {
            std::ptrdiff_t offset; // in the virtual table, plus one
            memcpy(&offset, &operation, sizeof offset);
            return offset / std::ptrdiff_t(sizeof(void *)) == due++;
        };
        using Api = OrvPluginApi;
        QVERIFY(isNext(&Api::name) && isNext(&Api::category) && isNext(&Api::resetToDefault) &&
                isNext(&Api::insertWidget) && isNext(&Api::syncPropValue) &&
                isNext(&Api::getCurrentParams) && isNext(&Api::setCurrentParams));
        QCOMPARE(Api().category(), 2);
    }

    // A host may clear the load hint that keeps libraries mapped. The catalog, a pending timer and
    // a record that it kept must still work after unloading.
    void usedAndUnloaded()
    {
        QWidget window;
        QPluginLoader loader{QString(module)};
        loader.setLoadHints({});
        delete loader.instance(); // the next one is new
        auto *const api = qobject_cast<OrvPluginApi *>(loader.instance());
        QVERIFY2(api, qPrintable(loader.errorString()));
        QCOMPARE(api->name(), "m24_tracking");
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
        QCOMPARE(QCoreApplication::translate("root", "hand"), "Hand");
        QTest::qWait(3300); // until after the moment at which polling would start
    }
};

TEST_MAIN(TestModule)
#include "tst_module.moc"
