#include "support.h"
#include "virtualtime.h"

#include <QMetaMethod>

#include <malloc.h>
#include <tuple>

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

/// A week in the life of the panel, out of sight but for a minute each hour, in which the user
/// works with it. Nothing may pile up.
class TestSoak : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void week();
};

namespace {

using namespace std::chrono_literals;

#ifdef __SANITIZE_ADDRESS__
constexpr int hours = 8; // for the sake of time
constexpr bool countsExactly = true;
qint64 allocatedBytes()
{
    return qint64(__sanitizer_get_current_allocated_bytes());
}
#else
constexpr int hours = 7 * 24;
// Else blocks that the allocator keeps for reuse count as allocated.
const bool countsExactly = qEnvironmentVariableIsSet("GLIBC_TUNABLES");
qint64 allocatedBytes()
{
    return qint64(mallinfo2().uordblks);
}
#endif
constexpr int pollsInAnHour = 3600;
constexpr int actionsInAnHour = 60; // ten thousand in a week

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
    QObjectList objects{&hosted.window, qApp, dispatcher, PanelInternals::pollTimer(*hosted.panel)};
    for (const QObject *root : QObjectList(objects))
        objects << root->findChildren<QObject *>();
    int timers = 0;
    int connected = 0;
    for (QObject *const object : qAsConst(objects)) {
        timers += dispatcher->registeredTimers(object).size();
        connected += connections(object);
    }
    return {objects.size(), timers, connected};
}

/// Lives to the next poll. Not a moment of it is skipped in which anything is due.
void passPoll(HostedPanel &hosted)
{
    VirtualTime::now +=
        std::chrono::milliseconds(PanelInternals::pollTimer(*hosted.panel)->remainingTime());
    VirtualTime::catchUp();
}

} // namespace

void TestSoak::week()
{
    HostedPanel hosted;
    RecordingHost &host = hosted.host;
    // The camera does as it is told.
    host.meanwhile = [&host] {
        static const QStringList commands{"04", "10", "07", "13"}; // in the order of the status
        const QString word = host.traffic.last();
        if (word.contains('='))
            host.status[commands.indexOf(word.left(2)) + 1] = char(word.mid(3).toInt());
    };
    host.status[1] = 1;
    hosted.insertAndShow();
    VirtualTime::advance(5s);

    const QStringList controls = QString("sw_title sw_title sw_picture_mode wg_full_body "
                                         "wg_multi_body rb_hand frame_title frame_title rb_normal "
                                         "rb_sport sw_picture_mode rb_normal_mode")
                                     .split(' ');
    const auto passHour = [&] {
        int pressed = 0;
        host.traffic.clear();
        hosted.window.show();
        for (int i = 0; i < actionsInAnHour; ++i) {
            pressed += int(hosted.press(controls[i % controls.size()]));
            VirtualTime::advance(250ms);
            passPoll(hosted);
        }
        QCOMPARE(host.traffic.count("read"), actionsInAnHour);
        QCOMPARE(pressed, actionsInAnHour);
        QCOMPARE(hosted.shown(), "on plain normal normal multi |spliter |picture_title");
        host.traffic.clear();
        hosted.window.hide();
        for (int i = actionsInAnHour; i < pollsInAnHour; ++i)
            passPoll(hosted);
        QCOMPARE(host.traffic.count("read"), host.traffic.size());
        QCOMPARE(host.traffic.size(), pollsInAnHour - actionsInAnHour);
        host.traffic.clear();
    };
    for (int i = 0; i < 3; ++i) // caches and pools fill
        passHour();
    const auto before = inventory(hosted);
    const qint64 bytesBefore = allocatedBytes();
    for (int i = 3; i < hours; ++i)
        passHour();
    QVERIFY(inventory(hosted) == before);
    const qint64 growth = allocatedBytes() - bytesBefore;
    QVERIFY2(growth < (countsExactly ? 1024 : 160 * 1024), qPrintable(QString::number(growth)));
}

TEST_MAIN(TestSoak)
#include "tst_soak.moc"
