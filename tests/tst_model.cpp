#include "panelplayer.h"
#include "testmain.h"

#include <QRandomGenerator>

#include <malloc.h>

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

#ifdef __SANITIZE_ADDRESS__
static const char seeds[] = "100"; // for the sake of time
static constexpr int hours = 3;
static qint64 allocatedBytes()
{
    return qint64(__sanitizer_get_current_allocated_bytes());
}
#else
static const char seeds[] = "1000";
static constexpr int hours = 24;
static qint64 allocatedBytes()
{
    return qint64(mallinfo2().uordblks);
}
#endif

static QString play(const QStringList &steps)
{
    return PanelPlayer().play(steps);
}

/// The panel against a small model of it, over random sequences of what its user, its host, its
/// camera and the clock do.
///
/// A failing sequence is reported in its shortest form and played alone with M24_SEQUENCE="...",
/// its steps separated by commas, and the argument "sequences". M24_SEED is the first seed,
/// M24_COUNT the number of seeds.
class TestModel : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void init() { VirtualTime::start(); }

    void sequences()
    {
        const QString given = qEnvironmentVariable("M24_SEQUENCE");
        const int first = qEnvironmentVariable("M24_SEED", "1").toInt();
        const int count = given.isEmpty() ? qEnvironmentVariable("M24_COUNT", seeds).toInt() : 1;
        for (int seed = first; seed < first + count; ++seed) {
            QRandomGenerator random{quint32(seed)};
            const auto pick = [&random](int bound) {
                return random.bounded(bound);
            };
            QStringList steps = given.isEmpty() ? chosenSteps(pick, 35) : given.split(',');
            if (play(steps).isEmpty())
                continue;
            for (int i = steps.size() - 1; i >= 0; --i) {
                QStringList fewer = steps;
                fewer.removeAt(i);
                if (!play(fewer).isEmpty())
                    steps = fewer;
            }
            QFAIL(qPrintable(QString("seed %1: M24_SEQUENCE=\"%2\"\n%3")
                                 .arg(seed)
                                 .arg(steps.join(','), play(steps))));
        }
    }

    // A day in the life of the panel, out of sight but for some minutes of each hour, in which the
    // user works with it. Nothing may pile up: of whatever kind, it would take memory.
    void day()
    {
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

TEST_MAIN(TestModel)
#include "tst_model.moc"
