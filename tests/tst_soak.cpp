#include "panelplayer.h"
#include "testmain.h"
#include "virtualtime.h"

#include <malloc.h>

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

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

} // namespace

/// A day in the life of the panel, out of sight but for some minutes of each hour, in which the
/// user works with it. Nothing may pile up: of whatever kind, it would take memory.
class TestSoak : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void day()
    {
        VirtualTime::start();
        PanelPlayer player;
        QCOMPARE(player.play({"obey", "camera=0001000100", "insert", "wait=5000"}), QString());
        QStringList hour{"show"};
        const QStringList controls =
            QString("sw_title,sw_title,key sw_picture_mode,wg_full_body,wg_multi_body,rb_hand,"
                    "frame_title,key frame_title,rb_normal,rb_sport,sw_picture_mode,rb_normal_mode")
                .split(',');
        for (int i = 0; i < 10 * controls.size(); ++i)
            hour << controls[i % controls.size()] << "wait=1250";
        hour += {"hide", "wait=3450000"};
        qint64 before = 0;
        for (int i = 0; i < hours; ++i) {
            if (i == 2) // caches and pools are full
                before = allocatedBytes();
            QCOMPARE(player.play(hour), QString());
        }
        const qint64 growth = allocatedBytes() - before;
        QVERIFY2(growth < 1024, qPrintable(QString::number(growth)));
    }
};

TEST_MAIN(TestSoak)
#include "tst_soak.moc"
