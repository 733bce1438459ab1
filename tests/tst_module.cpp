#include "orvpluginapi.h"
#include "testmain.h"

#include <QFile>
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

    // The catalog, pending timers and records need the code after a host has unloaded the module.
    void staysMapped()
    {
        QPluginLoader loader{QString(module)};
        loader.setLoadHints({}); // by default, Qt does not unload
        auto *const api = qobject_cast<OrvPluginApi *>(loader.instance());
        QVERIFY(api && api->name() == "m24_tracking" && api->category() == 0);
        delete loader.instance();
        while (loader.unload()) {
        }
        QFile maps("/proc/self/maps");
        QVERIFY(maps.open(QIODevice::ReadOnly) && maps.readAll().contains("/libm24_tracking.so"));
    }
};

TEST_MAIN(TestModule)
#include "tst_module.moc"
