// How often the host's window is painted for one action of the user.

#include "application.h"
#include "benchmark.h"
#include "hostedpanel.h"
#include "steppeddriver.h"

#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QThread>

namespace {

/// Counts the paints of a window.
class Paints : public QObject
{
public:
    explicit Paints(QWidget *window) { window->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        count += int(event->type() == QEvent::Paint);
        return false;
    }
};

void press(QWidget *widget)
{
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, widget->rect().center(), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
        QCoreApplication::sendEvent(widget, &event);
    }
}

} // namespace

int main()
{
    const Application application;
    SteppedDriver frames;
    HostWindow host;
    auto *const panel = host.insertPanel();
    HostWindow plain;
    Ui_root form;
    plain.insertForm(form);
    for (HostWindow *const each : {&host, &plain})
        each->window.show();
    frames.run(100);

    const auto paintsOf = [&frames](HostWindow &of, const Bench::Step &action) {
        QThread::msleep(250); // the title takes no press 200 ms after another
        Paints paints(&of.window);
        action();
        frames.run(100);
        if (paints.count == 0)
            qFatal("An action has shown nothing.");
        return paints.count;
    };
    const auto slide = [&form] {
        auto *const animation =
            new QPropertyAnimation(form.sw_title->findChild<Slider *>(), "geometry");
        animation->setDuration(100);
        animation->setStartValue(QRect(2, 2, 16, 16));
        animation->setEndValue(QRect(22, 2, 16, 16));
        animation->start(QAbstractAnimation::DeleteWhenStopped);
    };
    const int thaw = paintsOf(plain, [&plain] { plain.freezeAndThaw(); });
    const int slideAndThaw = paintsOf(plain, [&] { slide(); }) + thaw;

    Ui_root &ui = *PanelInternals::ui(*panel);
    // Polls that come of themselves would count with the actions.
    decltype(panel->commandChannel) camera = [](int, const QVariant &) {
        return QVariant();
    };
    camera.swap(panel->commandChannel);
    const auto poll = [&] {
        camera.swap(panel->commandChannel);
        PanelInternals::poll(*panel);
        camera.swap(panel->commandChannel);
    };
    const struct
    {
        const char *subject;
        Bench::Step action;
        int floor;
    } actions[] = {
        {"click on the title", [&] { press(ui.frame_title); }, thaw},
        {"click on the title again", [&] { press(ui.frame_title); }, thaw},
        {"change of type", [&] { press(ui.rb_hand); }, thaw},
        {"change of mode", [&] { press(ui.rb_sport); }, thaw},
        {"change of type back", [&] { press(ui.rb_normal); }, thaw},
        {"change of composition", [&] { press(ui.wg_full_body); }, thaw},
        {"composition off", [&] { press(ui.sw_picture_mode); }, slideAndThaw},
        {"composition on", [&] { press(ui.sw_picture_mode); }, slideAndThaw},
        {"tracking off", [&] { press(ui.sw_title); }, slideAndThaw},
        {"tracking on", [&] { press(ui.sw_title); }, slideAndThaw},
        {"a poll", poll, thaw},
    };
    for (const auto &action : actions)
        Bench::figure(action.subject, "paints", "1", paintsOf(host, action.action), action.floor);
    return Bench::run();
}
