#include "panelplayer.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QRandomGenerator>

#ifdef __SANITIZE_ADDRESS__
static const char seeds[] = "100"; // for the sake of time
#else
static const char seeds[] = "1000";
#endif

static QString play(const QStringList &steps)
{
    return PanelPlayer().play(steps);
}

/// The panel against a small model of it, over random sequences of what its user, its host, its
/// camera and the clock do.
///
/// A failing sequence is reported in its shortest form and played alone with M24_SEQUENCE="...",
/// its steps separated by commas. M24_SEED is the first seed, M24_COUNT the number of seeds.
class TestModel : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void sequences()
    {
        VirtualTime::start();
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
};

TEST_MAIN(TestModel)
#include "tst_model.moc"
