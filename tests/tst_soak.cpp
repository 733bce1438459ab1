#include "panelplayer.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QAbstractEventDispatcher>
#include <QMetaMethod>

#include <malloc.h>
#include <tuple>

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

/// A day in the life of the panel, out of sight but for some minutes of each hour, in which the
/// user works with it. Nothing may pile up.
class TestSoak : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void day();
};

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr int hours = 3; // for the sake of time
qint64 allocatedBytes()
{
    return qint64(__sanitizer_get_current_allocated_bytes());
}
#else
constexpr int hours = 24;
qint64 allocatedBytes()
{
    return qint64(mallinfo2().uordblks);
}
#endif

/// Connections to any signal of an object.
int connections(const QObject *object)
{
    struct Access : QObject
    {
        static auto counter() { return &Access::receivers; }
    };
    int count = 0;
    for (int i = 0; i < object->metaObject()->methodCount(); ++i) {
        const QMetaMethod method = object->metaObject()->method(i);
        if (method.methodType() == QMetaMethod::Signal)
            count += (object->*Access::counter())('2' + method.methodSignature());
    }
    return count;
}

/// What there is of objects, timers and connections.
std::tuple<int, int, int> inventory(HostedPanel &hosted)
{
    auto *const dispatcher = QAbstractEventDispatcher::instance();
    QObjectList objects{&hosted.window, qApp, dispatcher,
                        &PanelInternals::pollTimer(*hosted.panel)};
    const QObjectList roots = objects;
    for (const QObject *root : roots)
        objects << root->findChildren<QObject *>();
    int timers = 0;
    int connected = 0;
    for (QObject *const object : qAsConst(objects)) {
        timers += dispatcher->registeredTimers(object).size();
        connected += connections(object);
    }
    return {objects.size(), timers, connected};
}

} // namespace

void TestSoak::day()
{
    VirtualTime::start();
    PanelPlayer player;
    QCOMPARE(player.play({"obey", "camera=0001000100", "insert", "wait=5000"}), QString());

    QStringList hour{"show"};
    const QStringList controls = QString("sw_title,sw_title,key sw_picture_mode,wg_full_body,"
                                         "wg_multi_body,rb_hand,frame_title,key frame_title,"
                                         "rb_normal,rb_sport,sw_picture_mode,rb_normal_mode")
                                     .split(',');
    for (int i = 0; i < 10 * controls.size(); ++i)
        hour << controls[i % controls.size()] << "wait=1250";
    hour << "hide"
         << "wait=3450000";

    std::tuple<int, int, int> before;
    qint64 bytesBefore = 0;
    for (int i = 0; i < hours; ++i) {
        if (i == 2) { // caches and pools are full
            before = inventory(player.hosted);
            bytesBefore = allocatedBytes();
        }
        QCOMPARE(player.play(hour), QString());
    }
    QVERIFY(inventory(player.hosted) == before);
    const qint64 growth = allocatedBytes() - bytesBefore;
    QVERIFY2(growth < 1024, qPrintable(QString::number(growth)));
}

TEST_MAIN(TestSoak)
#include "tst_soak.moc"
