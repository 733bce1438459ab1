#include "panelmodel.h"

#include <utility>

using namespace std::chrono_literals;

const PanelModel::Button PanelModel::buttons[] = {
    {"rb_normal", &PanelModel::type, 0},       {"rb_hand", &PanelModel::type, 1},
    {"rb_whiteboard", &PanelModel::type, 2},   {"rb_normal_mode", &PanelModel::mode, 1},
    {"rb_sport", &PanelModel::mode, 2},        {"wg_half_body", &PanelModel::picture, 1},
    {"wg_full_body", &PanelModel::picture, 2}, {"wg_multi_body", &PanelModel::picture, 3}};

void PanelModel::press(const QString &name, Time now)
{
    const QString control = name.section(' ', -1);
    for (const Button &button : buttons) {
        if (control == button.name)
            check(button.group, button.value);
    }
    Switch *const pressed = control == "sw_title"          ? &tracking
                            : control == "sw_picture_mode" ? &composed
                                                           : nullptr;
    if (pressed && !pressed->sliding) {
        *pressed = {!pressed->on, true, false, now};
        slides << pressed;
        if (name == "sw_title")
            pressTitle(now); // which it lies on
    }
    if (control == "frame_title")
        pressTitle(now);
}

void PanelModel::pressTitle(Time now)
{
    if (now - titlePressed >= 200ms && tracking.on)
        showRows(!body);
    titlePressed = now;
}

void PanelModel::reset()
{
    set(tracking, true, false);
    check(&PanelModel::type, 0);
    check(&PanelModel::mode, 1);
    set(composed, false, false);
}

void PanelModel::set(Switch &which, bool on, bool silent)
{
    if (which.on != on && !which.sliding)
        which = {on, true, silent, which.since};
}

void PanelModel::beginSlide(Switch &which, Time now)
{
    which.since = now;
    slides.removeOne(&which);
    if (which.sliding)
        slides << &which;
}

void PanelModel::endSlide(Switch &which)
{
    slides.removeOne(&which);
    which.sliding = false;
    if (std::exchange(which.silent, false))
        return;
    if (&which == &tracking) {
        showRows(tracking.on);
        send("04", tracking.on);
    } else {
        compositionRow = composed.on;
        if (composed.on && picture == 0)
            check(&PanelModel::picture, 1);
        send("13", composed.on ? picture : 0);
    }
    if (!which.on)
        sent << "notice";
}

// The button that loses its check is reported as well as the one that gains it.
void PanelModel::check(Group group, int value)
{
    const int before = std::exchange(this->*group, value);
    if (before == value)
        return;
    for (const int reported : {before, value}) {
        if (group == &PanelModel::type) {
            send("10", reported);
            sent << "notice";
        } else if (reported != 0) {
            send(group == &PanelModel::mode ? "07" : "13", reported);
        }
    }
    if (group == &PanelModel::type) {
        compositionTitle = type == 0;
        compositionRow = compositionTitle && composed.on;
    }
}

void PanelModel::showRows(bool on)
{
    body = on;
    compositionTitle = on && type == 0;
    compositionRow = compositionTitle && composed.on;
}

void PanelModel::setUpFrom(const QByteArray &camera)
{
    if (quint8(camera[4]) < 4) {
        set(composed, camera[4] != 0, true);
        if (camera[4] != 0)
            check(&PanelModel::picture, camera[4]);
    }
    body = camera[1] != 0;
    set(tracking, body, true);
    compositionTitle = body && camera[2] == 0;
    compositionRow = compositionTitle && camera[4] != 0;
    type = quint8(camera[2]) < 3 ? quint8(camera[2]) : 0;
    mode = camera[3] == 2 ? 2 : 1;
}

void PanelModel::poll(const QByteArray &camera)
{
    const bool on = camera[1] != 0;
    // A value that is neither 0 nor 1 differs from whatever the switch shows.
    if (camera[1] != char(tracking.on) && !tracking.sliding) {
        set(tracking, on, true);
        body = on;
    }
    if (quint8(camera[2]) < 3)
        type = quint8(camera[2]);
    compositionTitle = on && camera[2] == 0;
    compositionRow = compositionTitle && composed.on;
}

QString PanelModel::shown() const
{
    QStringList words{tracking.on ? "on" : "off", composed.on ? "composed" : "plain"};
    for (const Button &button : buttons) {
        if (this->*button.group == button.value)
            words << QString(button.name).section('_', 1, 1);
    }
    words << QStringList{"|spliter"}.mid(int(!body))
          << QStringList{"|picture_title"}.mid(int(!compositionTitle))
          << QStringList{"|picture_mode"}.mid(int(!compositionRow));
    return words.join(' ');
}
