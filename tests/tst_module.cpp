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

    void identity()
    {
        QPluginLoader loader{QString(module)};
        const QScopedPointer<QObject> panel(loader.instance());
        auto *const api = qobject_cast<OrvPluginApi *>(panel.data());
        QVERIFY(api && api->name() == "m24_tracking" && api->category() == 0);
    }
};

TEST_MAIN(TestModule)
#include "tst_module.moc"
