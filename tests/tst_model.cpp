#include "support.h"
#include "virtualtime.h"

#include <QRandomGenerator>

/// The panel against a small model of it, over random sequences of what its user, its host, its
/// camera and the clock do.
///
/// A failing sequence is reported in its shortest form and played alone with M24_SEQUENCE="...".
/// M24_SEED is the first seed, M24_COUNT the number of seeds.
class TestModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void sequences();
};

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using VirtualTime::now;

#ifdef __SANITIZE_ADDRESS__
const QString seeds = "100"; // for the sake of time
#else
const QString seeds = "1000";
#endif

/// What the panel must show and send, by its rules alone.
struct Model
{
    struct Switch
    {
        bool on = false;
        bool sliding = false;
        bool silent = false;
        milliseconds since = 0ms;
    };

    Switch tracking, composed;
    int type = 0, mode = 1, picture = 0; // the checked buttons, by the values of their commands
    bool body = true, compositionTitle = true, compositionRow = true;
    milliseconds titlePressed = 0ms;
    QVector<Switch *> slides; // in the order in which they end
    QVector<Switch *> queued; // slides from the next turn on
    QStringList sent;

    static constexpr struct
    {
        const char *name;
        int Model::*group;
        int value;
    } buttons[] = {{"rb_normal", &Model::type, 0},       {"rb_hand", &Model::type, 1},
                   {"rb_whiteboard", &Model::type, 2},   {"rb_normal_mode", &Model::mode, 1},
                   {"rb_sport", &Model::mode, 2},        {"wg_half_body", &Model::picture, 1},
                   {"wg_full_body", &Model::picture, 2}, {"wg_multi_body", &Model::picture, 3}};

    void send(const char *command, int value) { sent << QString("%1=%2").arg(command).arg(value); }

    void showRows(bool on)
    {
        body = on;
        compositionTitle = on && type == 0;
        compositionRow = compositionTitle && composed.on;
    }

    void set(Switch &which, bool on, bool silent)
    {
        if (which.on == on || which.sliding)
            return;
        which = {on, true, silent, now};
        queued << &which;
    }

    void turn()
    {
        slides += queued;
        queued.clear();
    }

    void slideEnds(Switch &which)
    {
        slides.removeOne(&which);
        which.sliding = false;
        if (which.silent)
            return;
        if (&which == &tracking) {
            showRows(tracking.on);
            send("04", tracking.on);
        } else {
            compositionRow = composed.on;
            if (composed.on && picture == 0)
                check(&Model::picture, 1);
            send("13", composed.on ? picture : 0);
        }
        if (!which.on)
            sent << "notice";
    }

    // The button that loses its check is reported as well as the one that gains it.
    void check(int Model::*group, int value)
    {
        const int before = std::exchange(this->*group, value);
        if (before == value)
            return;
        for (const int reported : {before, value}) {
            if (group == &Model::type) {
                send("10", reported);
                sent << "notice";
            } else if (reported != 0) {
                send(group == &Model::mode ? "07" : "13", reported);
            }
        }
        if (group == &Model::type) {
            compositionTitle = type == 0;
            compositionRow = compositionTitle && composed.on;
        }
    }

    void press(const QString &name)
    {
        for (const auto &button : buttons) {
            if (name == button.name)
                check(button.group, button.value);
        }
        Switch *const pressed = name == "sw_title"          ? &tracking
                                : name == "sw_picture_mode" ? &composed
                                                            : nullptr;
        if (pressed && !pressed->sliding) {
            *pressed = {!pressed->on, true, false, now};
            slides << pressed;
            if (pressed == &tracking)
                pressTitle(); // which it lies on
        }
        if (name == "frame_title")
            pressTitle();
    }

    void pressTitle()
    {
        if (now - titlePressed >= 200ms && tracking.on)
            showRows(!body);
        titlePressed = now;
    }

    void reset()
    {
        set(tracking, true, false);
        check(&Model::type, 0);
        check(&Model::mode, 1);
        set(composed, false, false);
    }

    void setUpFrom(const QByteArray &camera)
    {
        if (camera[4] < 4) {
            set(composed, camera[4] != 0, true);
            if (camera[4] != 0)
                check(&Model::picture, camera[4]);
        }
        body = camera[1] != 0;
        set(tracking, body, true);
        compositionTitle = body && camera[2] == 0;
        compositionRow = compositionTitle && camera[4] != 0;
        type = camera[2] < 3 ? camera[2] : 0;
        mode = camera[3] == 2 ? 2 : 1;
    }

    void poll(const QByteArray &camera)
    {
        const bool on = camera[1] != 0;
        // A value that is neither 0 nor 1 differs from whatever the switch shows.
        if (camera[1] != char(tracking.on) && !tracking.sliding) {
            set(tracking, on, true);
            body = on;
        }
        if (camera[2] < 3)
            type = camera[2];
        compositionTitle = on && camera[2] == 0;
        compositionRow = compositionTitle && composed.on;
    }

    QString shown() const
    {
        QStringList words{tracking.on ? "on" : "off", composed.on ? "composed" : "plain"};
        for (const auto &button : buttons) {
            if (this->*button.group == button.value)
                words << QString(button.name).section('_', 1, 1);
        }
        words << QStringList{"|spliter"}.mid(int(!body))
              << QStringList{"|picture_title"}.mid(int(!compositionTitle))
              << QStringList{"|picture_mode"}.mid(int(!compositionRow));
        return words.join(' ');
    }
};

/// Plays one sequence to a panel and to the model. The moments at which a slide ends or the camera
/// is read are Qt's affair: the model learns of them, and whether they were due is checked here.
class Play
{
public:
    /// What went wrong; empty if nothing did.
    QString run(const QStringList &steps)
    {
        now += 1000s - now % 1000s; // what coarse timers make of their intervals depends on it
        hosted.host.meanwhile = [this] {
            if (hosted.host.traffic.last() == "read")
                read();
        };
        for (const QString &step : steps) {
            take(step);
            const QString sent = hosted.host.takeSent().join(' ');
            const QString due = model.sent.join(' ');
            model.sent.clear();
            if (sent != due)
                fault = "sent " + sent + ", not " + due;
            else if (inserted && hosted.shown() != model.shown())
                fault = "shows " + hosted.shown() + ", not " + model.shown();
            if (!fault.isEmpty())
                return step + ": " + fault;
        }
        return {};
    }

private:
    void take(const QString &step)
    {
        const QString value = step.section('=', 1);
        if (step.startsWith("camera=")) {
            hosted.host.status = QByteArray::fromHex(value.toLatin1());
        } else if (step.startsWith("answer=")) {
            hosted.host.foreignAnswer = value == "foreign" ? QVariant("text") : QVariant();
            hosted.host.length = value.toUInt();
        } else if (step == "wait=poll") { // until just before
            const int left = PanelInternals::pollTimer(*hosted.panel)->remainingTime();
            wait(std::max(0ms, milliseconds(left) - 40ms));
        } else if (step.startsWith("wait=")) {
            wait(milliseconds(value.toInt()));
        } else if (step == "insert" && !inserted) {
            inserted = true;
            hosted.panel->insertWidget(hosted.container);
        } else if (step == "reset") {
            hosted.panel->resetToDefault();
            if (inserted)
                model.reset();
        } else if (step == "resize") {
            hosted.window.resize(1400 - hosted.window.width(), 900);
        } else if (step == "show" || step == "hide") {
            hosted.window.setVisible(step == "show");
        } else if (inserted && hosted.press(step)) {
            model.press(step);
        }
    }

    void wait(milliseconds span)
    {
        const auto end = now + span;
        do {
            VirtualTime::advance(std::min<milliseconds>(10ms, end - now));
            model.turn();
            endSlides();
            if (inserted && now > readBy)
                fault = "no read when one was due";
        } while (now < end);
        if (!hosted.window.updatesEnabled())
            fault = "left frozen";
    }

    void endSlides()
    {
        for (Model::Switch *const which : QVector<Model::Switch *>(model.slides)) {
            const bool sliding =
                (which == &model.tracking ? hosted.ui()->sw_title : hosted.ui()->sw_picture_mode)
                    ->isSliding();
            const auto time = now - which->since;
            if (sliding ? time > 150ms : time < 80ms)
                fault = "a slide of another length";
            if (!sliding)
                model.slideEnds(*which);
        }
    }

    void read()
    {
        endSlides();
        if (now < readFrom)
            fault = "read too soon";
        const bool first = firstPoll == 0s;
        const bool answered = !hosted.host.foreignAnswer.isValid() && hosted.host.length > 0;
        if (first)
            firstPoll = now + 4000ms;
        if (first || retrying) {
            if (answered)
                model.setUpFrom(hosted.host.status);
            else if (retrying)
                model.showRows(false);
            retrying = first && !answered;
        } else if (answered && hosted.host.length >= 3) {
            model.poll(hosted.host.status);
        }
        // Timers of a second are coarse: a twentieth to either side.
        const bool toFirstPoll = !retrying && now < firstPoll - 200ms;
        const auto next = toFirstPoll ? firstPoll : now + 1000ms;
        readFrom = next - (toFirstPoll ? 200ms : 50ms);
        readBy = next + (toFirstPoll ? 220ms : 70ms);
    }

    HostedPanel hosted;
    Model model;
    QString fault;
    bool inserted = false;
    bool retrying = false;
    milliseconds firstPoll = 0s, readFrom = 0s, readBy = 0s;
};

QStringList randomSteps(quint32 seed)
{
    QRandomGenerator random(seed);
    const auto one = [&random](const char *of) {
        const QStringList words = QString(of).split(' ');
        return words[random.bounded(words.size())];
    };
    const auto camera = [&] {
        return "camera=00" + one("00 00 01 01 01 07") + one("00 00 00 01 02 09") + one("00 01 02") +
               one("00 01 02 03 04");
    };
    const auto answer = [&] {
        return "answer=" + one("60 60 60 60 3 2 1 0 foreign");
    };
    QStringList steps{camera(), answer(), one("show hide reset"), "insert", one("show wait=100")};
    for (int i = 0; i < 35; ++i) {
        const QString kind = one("press press press wait wait wait camera answer host");
        if (kind == "press")
            steps << one(
                "frame_title frame_title sw_title sw_title rb_normal rb_hand rb_whiteboard "
                "rb_normal_mode rb_sport sw_picture_mode sw_picture_mode wg_half_body "
                "wg_full_body wg_multi_body");
        else if (kind == "wait")
            steps << "wait=" + one("0 20 50 100 250 1000 3000 poll poll");
        else if (kind == "host")
            steps << one("reset resize hide show show show");
        else
            steps << (kind == "camera" ? camera() : answer());
        if (steps.last() == "frame_title") // which takes a press in 200 ms
            steps << "wait=100"
                  << "frame_title"
                  << "wait=100"
                  << "frame_title";
    }
    return steps << "wait=250";
}

} // namespace

void TestModel::sequences()
{
    const auto play = [](const QStringList &steps) {
        return Play().run(steps);
    };
    const QString given = qEnvironmentVariable("M24_SEQUENCE");
    const int first = qEnvironmentVariable("M24_SEED", "1").toInt();
    const int count = given.isEmpty() ? qEnvironmentVariable("M24_COUNT", seeds).toInt() : 1;
    for (int seed = first; seed < first + count; ++seed) {
        QStringList steps = given.isEmpty() ? randomSteps(quint32(seed)) : given.split(' ');
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
                             .arg(steps.join(' '), play(steps))));
    }
}

TEST_MAIN(TestModel)
#include "tst_model.moc"
