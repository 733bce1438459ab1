#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

using namespace std::chrono_literals;
using VirtualTime::advance;
using VirtualTime::now;

/// The rules of the panel. Unless its steps insert the panel themselves, a row begins with a
/// visible panel that shows the factory settings: tracking on, type Basic, mode Standard, no
/// composition.
///
/// Steps:
///   camera=0001000102  sets the camera's status: unused, tracking, type, mode, composition
///   answer=3           sets the length of its answers; answer=text: an answer of another type
///   insert show reset
///   poll               reads the status, as the panel does every second
///   wait=1000 wait     lets that many ms pass; by default 250, which is longer than a slide
///   rb_hand            presses a control; Space:sw_title: presses that key on it
///
/// Sent: "10=1" is command 10 with value 1, "notice" the notice to the host. Shown: tracking,
/// composition, the checked buttons, and after bars the visible rows.
static const char factory[] = "on plain normal normal |spliter |picture_title";
static const char composed[] =
    "on composed normal normal half |spliter |picture_title |picture_mode";
static const struct Row
{
    const char *name;
    const char *steps;
    const char *sent;
    const char *shown;
} rows[] = {
    // Set-up shows the camera's answer, whatever its length. It sends back only composition.
    {"hand", "camera=0001010102 insert wait", "13=2", "on composed hand normal full |spliter"},
    {"board", "camera=0001020200 insert wait", "", "on plain whiteboard sport |spliter"},
    {"unknown type and mode", "camera=0001030900 insert wait", "",
     "on plain normal normal |spliter"},
    {"composition; tracking above 1", "camera=0007000101 insert wait", "13=1", composed},
    {"composition, but off", "camera=0000000203 insert wait", "13=3",
     "off composed normal sport multi"},
    {"unknown composition", "camera=0001000104 insert wait", "",
     "on plain normal normal |spliter |picture_title |picture_mode"},
    {"one byte; an early reset", "answer=1 camera=0000010200 reset insert wait", "",
     "off plain hand sport"},

    // Without an answer, the panel asks once more after a second. If that fails, it shows only its
    // title.
    {"the form as built", "answer=0 insert wait=900", "",
     "off plain normal normal |spliter |picture_title |picture_mode"},
    {"another type is no answer", "answer=text insert wait=1100", "", "off plain normal normal"},
    {"late answer", "camera=0001010203 answer=0 insert wait=900 answer=60 wait", "13=3",
     "on composed hand sport multi |spliter"},
    {"late answer after a press",
     "answer=0 insert show wait sw_picture_mode wait answer=60 wait=1000", "13=1 13=1",
     "on plain normal normal half |spliter |picture_title"},
    {"no second retry", "answer=0 insert wait=1100 answer=60 wait=1900", "",
     "off plain normal normal"},

    // The poll follows tracking and type, and sends nothing.
    {"board", "camera=0001020100 poll", "", "on plain whiteboard normal |spliter"},
    {"unknown type", "camera=0001090100 rb_hand poll", "10=0 notice 10=1 notice",
     "on plain hand normal |spliter"},
    {"on and basic", "camera=0000010101 insert wait camera=0001000100 poll wait", "13=1", composed},
    {"mode and composition: not followed", "camera=0001000203 poll wait", "", factory},
    {"two bytes are too short", "camera=0000010100 answer=2 poll wait", "", factory},
    {"three are enough", "camera=0000010100 answer=3 poll wait", "", "off plain hand normal"},
    {"during a slide: ignored", "sw_title poll wait", "04=0 notice", "off plain normal normal"},
    {"during its own slide: ignored", "camera=0000000100 poll camera=0001000100 poll wait", "",
     "off plain normal normal |picture_title"},
    {"the next press is sent", "camera=0000000100 poll wait sw_title wait", "04=1", factory},
    {"unchanged: does not unfold", "frame_title poll", "", "on plain normal normal |picture_title"},
    {"above 1: unfolds", "camera=0007000100 frame_title poll", "", factory},
    {"above 1: the next press is sent", "camera=0007000100 poll sw_title wait", "04=0 notice",
     "off plain normal normal"},

    // The switch changes at once, the rows and the camera after its slide.
    {"during the slide", "sw_title", "", "off plain normal normal |spliter |picture_title"},
    {"off and on", "sw_title wait sw_title wait", "04=0 notice 04=1", factory},
    {"press during the slide: ignored", "sw_title sw_title wait", "04=0 notice",
     "off plain normal normal"},
    {"the press also unfolds", "camera=0000000101 insert show wait sw_title", "13=1", composed},
    {"a key does not unfold", "camera=0000000100 insert show wait Space:sw_title", "",
     "on plain normal normal"},
    {"a key switches", "Space:sw_title wait", "04=0 notice", "off plain normal normal"},
    {"Enter is for the title row only", "Return:sw_title wait", "", factory},
    {"hand", "rb_hand sw_title wait sw_title wait", "10=0 notice 10=1 notice 04=0 notice 04=1",
     "on plain hand normal |spliter"},
    {"composed", "sw_picture_mode wait sw_title wait sw_title wait", "13=1 13=1 04=0 notice 04=1",
     composed},

    // Type and mode: the old value is sent, then the new one. Composition is for Basic only.
    {"basic", "rb_hand rb_normal", "10=0 notice 10=1 notice 10=1 notice 10=0 notice", factory},
    {"board", "rb_whiteboard rb_whiteboard", "10=0 notice 10=2 notice",
     "on plain whiteboard normal |spliter"},
    {"mode", "rb_sport rb_normal_mode rb_normal_mode", "07=1 07=2 07=2 07=1", factory},

    // Composition off is a value of its own. The first press also checks a picture, which is sent.
    {"picture", "sw_picture_mode wait wg_full_body wg_multi_body", "13=1 13=1 13=1 13=2 13=2 13=3",
     "on composed normal normal multi |spliter |picture_title |picture_mode"},
    {"on again", "sw_picture_mode wait Space:sw_picture_mode wait Space:sw_picture_mode wait",
     "13=1 13=1 13=0 notice 13=1", composed},
    {"hand during the slide", "sw_picture_mode rb_hand wait", "10=0 notice 10=1 notice 13=1 13=1",
     "on composed hand normal half |spliter |picture_mode"},
    {"hand and back", "sw_picture_mode wait rb_hand rb_normal",
     "13=1 13=1 10=0 notice 10=1 notice 10=1 notice 10=0 notice", composed},
    {"in its first show", "camera=0001010100 insert show wait rb_normal sw_picture_mode wait",
     "10=1 notice 10=0 notice 13=1 13=1", composed},

    // The title row folds the others while tracking is on.
    {"key", "Space:frame_title", "", "on plain normal normal"},
    {"Enter", "Return:frame_title", "", "on plain normal normal"},
    {"shortcut: ignored", "Ctrl+Space:frame_title", "", factory},
    {"unfold", "frame_title wait frame_title", "", factory},
    {"twice within 200 ms", "frame_title frame_title", "", "on plain normal normal"},
    {"composed", "sw_picture_mode wait frame_title wait frame_title", "13=1 13=1", composed},
    {"hand", "rb_hand frame_title wait frame_title", "10=0 notice 10=1 notice",
     "on plain hand normal |spliter"},
    {"off", "sw_title wait frame_title", "04=0 notice", "off plain normal normal"},

    // Reset presses the controls that differ from the factory settings.
    {"nothing to do", "reset wait", "", factory},
    {"everything", "camera=0000010203 insert show wait reset wait",
     "13=3 10=1 notice 10=0 notice 07=2 07=1 04=1 13=0 notice",
     "on plain normal normal multi |spliter |picture_title"},
    {"during slides: ignored", "sw_title sw_picture_mode reset wait", "04=0 notice 13=1 13=1",
     "off composed normal normal half |picture_mode"},
    {"during the poll's slide: ignored", "camera=0000000100 poll reset wait", "",
     "off plain normal normal"},
    {"before the first show", "camera=0000020103 insert wait reset show wait",
     "13=3 10=2 notice 10=0 notice 13=0 notice 04=1",
     "on plain normal normal multi |spliter |picture_title"},
};

static void take(HostedPanel &hosted, const QString &step)
{
    const QString value = step.section('=', 1);
    if (step.startsWith("camera=")) {
        hosted.host.status = QByteArray::fromHex(value.toLatin1());
    } else if (step.startsWith("answer=")) {
        hosted.host.length = value.toULongLong();
        hosted.host.foreignAnswer = value == "text" ? QVariant(value) : QVariant();
    } else if (step.startsWith("wait")) {
        advance(value.isEmpty() ? 250ms : std::chrono::milliseconds(value.toInt()));
    } else if (step == "insert") {
        hosted.panel->insertWidget(hosted.container);
    } else if (step == "show") {
        hosted.window.show();
    } else if (step == "reset") {
        hosted.panel->resetToDefault();
    } else if (step == "poll") {
        PanelInternals::poll(*hosted.panel);
    } else {
        QVERIFY2(hosted.press(step), qPrintable("hidden: " + step));
    }
}

class TestScenarios : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void init() { VirtualTime::start(); }

    void scenarios_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(rows)); ++i)
            QTest::addRow("%s: %s", rows[i].name, rows[i].steps) << i;
    }

    void scenarios()
    {
        QFETCH(int, index);
        const Row &row = rows[index];
        QStringList steps = QString(row.steps).split(' ');
        if (!steps.contains("insert"))
            steps = QStringList{"insert", "show", "wait"} + steps;
        HostedPanel hosted;
        for (const QString &step : qAsConst(steps))
            take(hosted, step);
        QCOMPARE(hosted.host.takeSent().join(' '), QString(row.sent));
        QCOMPARE(hosted.shown(), QString(row.shown));
        VirtualTime::catchUp();
        QVERIFY(hosted.window.updatesEnabled());
    }

    // The language, the first read, the retry, and polls. One answer takes 1.5 s: the next poll
    // comes a second after it. Qt's coarse timers may be a little off.
    void readingTimes()
    {
        HostedPanel hosted;
        QVector<std::chrono::milliseconds> requests;
        hosted.host.length = 0;
        hosted.host.meanwhile = [&] {
            requests << now;
            now += requests.size() == 5 ? 1500ms : 0ms;
        };
        hosted.panel->insertWidget(hosted.container);
        advance(8s);
        const QVector<std::chrono::milliseconds> pauses{0s, 1s, 3s, 1s, 2500ms};
        QCOMPARE(requests.size(), pauses.size() + 1);
        for (int i = 0; i < pauses.size(); ++i) {
            const auto late = requests[i + 1] - requests[i] - pauses[i];
            QVERIFY(late >= -pauses[i] / 10 && late <= pauses[i] / 10);
        }
    }
};

TEST_MAIN(TestScenarios)
#include "tst_scenarios.moc"
