#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QScopedPointer>
#include <QWindow>

#include <thread>

namespace {

using namespace std::chrono_literals;
using VirtualTime::advance;
using VirtualTime::catchUp;
using VirtualTime::now;

/// What a row plays with: a hosted panel and another window, in sight.
struct Stage : QObject
{
    Stage()
    {
        (new QVBoxLayout(&other))->addWidget(label);
        hosted->insertAndShow();
        other.show();
        // A real screen takes real time.
        for (int i = 0; i < 5000 && !window().windowHandle()->isExposed(); ++i, catchUp())
            std::this_thread::sleep_for(1ms);
        settle();
        window().installEventFilter(this);
        other.installEventFilter(this);
    }

    void press(const char *names)
    {
        const QStringList controls = QString(names).split(' ');
        for (const QString &name : controls) {
            if (!hosted->press(name))
                notes << "no " + name;
        }
    }

    static void settle() { advance(250ms); } // past slides, and the title row's pause

    void freeze() { freeze(*hosted->container, hosted->ui().frame_title); }
    void freeze(QWidget &section, QWidget *row)
    {
        hosted->panel->updateSpliter(&section, row, true);
    }

    void note(int number) { notes << QString::number(number); }
    void noteUpdates(const QWidget &widget) { note(int(widget.updatesEnabled())); }

    RecordingHost &host() { return hosted->host; }
    QWidget &window() { return hosted->window; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        paints[watched] += int(event->type() == QEvent::Paint);
        return false;
    }

    QHash<QObject *, int> paints;
    QWidget other;
    QLabel *label = new QLabel("other");
    QScopedPointer<HostedPanel> hosted{new HostedPanel};
    QStringList notes; ///< what a row has to say, at the end of what was sent
};

const struct Row
{
    const char *name;
    void (*play)(Stage &stage);
    const char *sent; // and what the row has to say
    const char *shown = "on plain normal normal |spliter |picture_title"; // if the panel is left
} rows[] = {
    {"a camera slower than the poll",
     [](Stage &stage) {
         int reads = 0;
         stage.host().meanwhile = [&stage, &reads] {
             if (++reads < 9) // or polls that pile up would never end
                 now += 1500ms;
             if (!stage.window().updatesEnabled())
                 stage.notes << "read in a deferred step";
         };
         advance(10s); // read after 4, 6.5 and 9 s
         stage.note(reads);
         stage.host().meanwhile = nullptr;
     },
     "3"},
    {"the panel moves to a window of its own, and on to another",
     [](Stage &stage) {
         stage.press("rb_hand sw_title");
         stage.hosted->panel->setParent(nullptr);
         stage.hosted->panel->show();
         catchUp();
         stage.noteUpdates(*stage.hosted->panel);
         stage.press("rb_normal");
         stage.settle();
         stage.press("sw_title rb_sport");
         stage.other.layout()->addWidget(stage.hosted->panel);
     },
     "10=0 notice 10=1 notice 10=1 notice 10=0 notice 04=0 notice 07=1 07=2 04=1 1",
     "on plain normal sport |spliter |picture_title"},
    {"the window goes among the events of a deferred step",
     [](Stage &stage) {
         stage.press("rb_hand");
         QTimer::singleShot(0, qApp, [&stage] { stage.hosted.reset(); });
     },
     ""},
    {"the channel's end of a click opens a dialog, and the camera falls silent",
     [](Stage &stage) {
         stage.host().meanwhile = [&stage] {
             stage.host().meanwhile = nullptr;
             stage.host().length = 0;
             QTimer::singleShot(0, qApp, [&stage] {
                 advance(100ms);
                 stage.noteUpdates(stage.window());
             });
         };
         stage.press("rb_hand");
     },
     "10=0 notice 10=1 notice 1", "on plain hand normal |spliter"},
    {"what is taken out of a window that goes",
     [](Stage &stage) {
         QScopedPointer<QWidget> old(new QWidget);
         (new QVBoxLayout(old.data()))->addWidget(stage.label);
         stage.freeze(*old, stage.label);
         stage.label->setParent(nullptr);
         old.reset();
         stage.other.setUpdatesEnabled(false); // by the host, and none of the step's business
         catchUp();
         stage.noteUpdates(*stage.label);
         stage.noteUpdates(stage.other);
         stage.other.setUpdatesEnabled(true);
         stage.other.layout()->addWidget(stage.label);
     },
     "1 0"},
    {"a freeze among the events of a deferred step has a thaw of its own, one without end none",
     [](Stage &stage) {
         stage.freeze(stage.other, stage.label); // a thaw for each window, but one
         stage.freeze();
         stage.freeze();
         QTimer::singleShot(1, &stage.window(), [&stage] {
             stage.noteUpdates(stage.window());
             stage.freeze();
         });
         now += 1ms;
         catchUp();
         stage.note(stage.paints[&stage.window()]);
         stage.note(stage.paints[&stage.other]);
         stage.hosted->panel->updateSpliterSub(stage.hosted->container, stage.label, true, false);
         catchUp();
         stage.noteUpdates(stage.window());
         stage.freeze();
     },
     "0 3 2 0"},
};

} // namespace

/// Faults that fall together: slow cameras, hasty users, windows and panels that come and go while
/// something is under way. Nothing may be lost, sent after the end, or left frozen.
class TestFaults : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void init() { VirtualTime::start(); }

    void faults_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(rows)); ++i)
            QTest::newRow(rows[i].name) << i;
    }

    void faults()
    {
        expectedWarnings.setPattern("does not support setParent"); // of windows, offscreen
        QFETCH(int, index);
        const Row &row = rows[index];
        Stage stage;
        row.play(stage);
        advance(150ms);
        const auto windows = QApplication::topLevelWidgets();
        for (const QWidget *window : windows)
            QVERIFY(window->updatesEnabled());
        if (stage.hosted && stage.hosted->panel) {
            QCOMPARE(stage.hosted->shown(), QString(row.shown));
            stage.notes = stage.host().takeSent() + stage.notes;
        }
        QCOMPARE(stage.notes.join(' '), QString(row.sent));
    }

    // A thaw paints the window once for itself and once for its children, a slide of 100 ms each of
    // its frames, which this clock brings every 20 ms; the last falls into the thaw.
    void paints()
    {
        Stage stage;
        stage.press("sw_picture_mode");
        stage.settle();
        QStringList paints;
        for (const char *control :
             {"frame_title", "frame_title", "rb_hand", "rb_normal", "rb_sport", "wg_full_body",
              "sw_picture_mode", "poll", "sw_title"}) {
            stage.paints.clear();
            if (!stage.hosted->press(control)) // the poll is none
                PanelInternals::poll(*stage.hosted->panel);
            stage.settle();
            paints << control + QString(" %1").arg(stage.paints[&stage.window()]);
        }
        QCOMPARE(paints.join(' '), "frame_title 2 frame_title 2 rb_hand 2 rb_normal 2 rb_sport 2 "
                                   "wg_full_body 2 sw_picture_mode 6 poll 2 sw_title 6");
    }
};

TEST_MAIN(TestFaults)
#include "tst_faults.moc"
