#pragma once

#include "hostedpanel.h"
#include "panelmodel.h"
#include "virtualtime.h"

#include <functional>

/// Plays steps to a panel and to the model of it, on a clock that rules already. The moments at
/// which a slide ends or the camera is read are Qt's affair: the model learns of them, and whether
/// they were due is checked here.
///
/// A step is one of
///   camera=0001000102       the camera's bytes
///   answer=60 answer=text   what its answers hold from now on: bytes, or something foreign
///   obey                    from now on the camera does what it is told
///   insert show hide resize reset delete
///   wait=100 wait=poll      in ms, or until just before the next poll
///   rb_hand "key sw_title"  the press of a control, or of the space bar on it
class PanelPlayer
{
    using Time = PanelModel::Time;

public:
    PanelPlayer()
    {
        now += Time(1000000) -
               now % Time(1000000); // what coarse timers make of their intervals depends on it
        hosted.host.meanwhile = [this] {
            meanwhile();
        };
    }

    /// What went wrong, beginning with the step; empty if nothing did.
    QString play(const QStringList &steps)
    {
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

    HostedPanel hosted;

private:
    void take(const QString &step)
    {
        const QString value = step.section('=', 1);
        if (step.startsWith("camera=")) {
            hosted.host.status = QByteArray::fromHex(value.toLatin1());
        } else if (step.startsWith("answer=")) {
            bool isLength = false;
            hosted.host.length = value.toULongLong(&isLength);
            hosted.host.foreignAnswer = isLength           ? QVariant()
                                        : value == "query" ? QVariant::fromValue(SettingData())
                                                           : QVariant(value);
        } else if (step == "wait=poll") {
            wait(std::max(Time(0), untilPoll() - Time(40)));
        } else if (step.startsWith("wait=")) {
            wait(Time(value.toInt()));
        } else if (step == "insert") {
            if (!inserted)
                insert();
        } else if (step == "reset") {
            hosted.panel->resetToDefault();
            if (inserted)
                model.reset();
        } else if (step == "resize") {
            hosted.window.resize(1400 - hosted.window.width(), 900);
        } else if (step == "show" || step == "hide") {
            hosted.window.setVisible(step == "show");
        } else if (step == "obey") {
            obeys = true;
        } else if (step == "delete") {
            delete hosted.panel;
            inserted = false;
            model.slides.clear();
            queued.clear();
        } else if (inserted && hosted.press(step)) {
            model.press(step, now);
        }
    }

    void insert()
    {
        inserted = true;
        hosted.panel->insertWidget(hosted.container);
        // The silent slides of set-up, which nobody was there to hear of; later ones are heard of.
        queued = {&model.composed, &model.tracking};
        for (PanelModel::Switch *const which : {&model.tracking, &model.composed})
            QObject::connect(&buttonOf(*which), &SwitchButton::sendAnimate, hosted.panel,
                             [this, which] { queued << which; });
    }

    void wait(Time span)
    {
        const auto end = now + span;
        do {
            // Not a moment is skipped in which anything is due: between polls that is the slides
            // alone.
            const bool slides = !model.slides.isEmpty() || !queued.isEmpty();
            const Time leap =
                slides || untilPoll() < Time(0) ? Time(10) : std::max(Time(1), untilPoll());
            now += std::min(leap, end - now);
            VirtualTime::catchUp();
            for (PanelModel::Switch *const which : qAsConst(queued)) {
                if (buttonOf(*which).isSliding())
                    model.beginSlide(*which, now);
            }
            queued.clear();
            endSlides();
            if (inserted && now > readBy)
                fault = "no read when one was due";
        } while (now < end);
        if (!hosted.window.updatesEnabled())
            fault = "left frozen";
    }

    SwitchButton &buttonOf(const PanelModel::Switch &which)
    {
        return &which == &model.tracking ? *hosted.ui().sw_title : *hosted.ui().sw_picture_mode;
    }

    void endSlides()
    {
        const auto slides = model.slides;
        for (PanelModel::Switch *const which : slides) {
            const bool sliding = buttonOf(*which).isSliding();
            const auto time = now - which->since;
            if (sliding ? time > Time(150) : time < Time(80))
                fault = QString("a slide of %1 ms").arg(time.count());
            if (!sliding)
                model.endSlide(*which);
        }
    }

    void meanwhile()
    {
        const QString word = hosted.host.traffic.last();
        if (!hosted.panel)
            fault = word + " after the end";
        else if (word == "read")
            read();
        else if (obeys && word.contains('=')) // in the order of the camera's bytes
            hosted.host.status[QString("04100713").indexOf(word.leftRef(2)) / 2 + 1] =
                char(word.midRef(3).toInt());
    }

    void read()
    {
        endSlides();
        if (now < readFrom)
            fault = "read too soon";
        const bool first = firstPoll == Time(0);
        const bool answered = !hosted.host.foreignAnswer.isValid() && hosted.host.length > 0;
        if (first)
            firstPoll = now + Time(4000);
        if (!first && !retrying) {
            if (answered && hosted.host.length >= 3)
                model.poll(hosted.host.status);
        } else if (answered) {
            model.setUpFrom(hosted.host.status);
        } else if (retrying) {
            model.showRows(false);
        }
        retrying = first && !answered;
        // Timers of a second are coarse: a twentieth to either side.
        const bool toFirstPoll = !retrying && now < firstPoll - Time(200);
        const auto next = toFirstPoll ? firstPoll : now + Time(1000);
        readFrom = next - (toFirstPoll ? Time(200) : Time(50));
        readBy = next + (toFirstPoll ? Time(220) : Time(70));
    }

    Time untilPoll()
    {
        return Time(hosted.panel ? PanelInternals::pollTimer(*hosted.panel).remainingTime() : -1);
    }

    Time &now = VirtualTime::now;
    PanelModel model;
    QVector<PanelModel::Switch *> queued; // slides from the next turn on
    QString fault;
    bool inserted = false;
    bool retrying = false;
    bool obeys = false;
    Time firstPoll{0}, readFrom{0}, readBy{0};
};

/// Steps of a panel's life, chosen by `pick`, which gives a number below its argument.
inline QStringList chosenSteps(const std::function<int(int)> &pick, int count)
{
    const auto one = [&pick](const char *of) {
        const QStringList words = QString(of).split(' ');
        return words[pick(words.size())];
    };
    const auto camera = [&] {
        return "camera=00" + one("00 00 01 01 01 07 FF") + one("00 00 00 01 02 03 09 FF") +
               one("00 01 02 FF") + one("00 01 02 03 04 FF");
    };
    const auto answer = [&] {
        return "answer=" + one("60 60 60 60 3 2 1 0 255 18446744073709551615 text query");
    };
    QStringList steps{camera(), answer(), one("show hide reset"), "insert", one("show wait=100")};
    for (int i = 0; i < count; ++i) {
        const QString kind = one("press press press key wait wait wait camera answer host");
        if (kind == "press")
            steps << one("frame_title frame_title sw_title sw_title rb_normal rb_hand "
                         "rb_whiteboard rb_normal_mode rb_sport sw_picture_mode sw_picture_mode "
                         "wg_half_body wg_full_body wg_multi_body");
        else if (kind == "key")
            steps << "key " + one("frame_title sw_title sw_picture_mode");
        else if (kind == "wait")
            steps << "wait=" + one("0 20 50 100 250 1000 3000 poll poll");
        else if (kind == "host")
            steps << one("reset resize hide show show show");
        else
            steps << (kind == "camera" ? camera() : answer());
        if (steps.last() == "frame_title") // which takes a press in 200 ms
            steps += {"wait=100", "frame_title", "wait=100", "frame_title"};
    }
    steps << one("wait=250 wait=20 show"); // and then the window goes, or the panel alone
    return pick(2) == 0 ? steps : steps + QStringList{"delete", "wait=5000"};
}
