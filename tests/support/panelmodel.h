#pragma once

#include <QStringList>
#include <QVector>

#include <chrono>
#include <utility>

/// What the panel must show and send, by its rules alone. Told what its user and its host do, what
/// it reads, and when slides begin and end.
class PanelModel
{
public:
    using Time = std::chrono::milliseconds;

    struct Switch
    {
        bool on = false, sliding = false, silent = false;
        Time since{0}; ///< when the slide began
    };

    Switch tracking, composed;
    QVector<Switch *> slides; ///< in the order in which they end
    QStringList sent;

    /// A press of a control, or of a key on it ("key sw_title").
    void press(const QString &name, Time now)
    {
        const QString control = name.section(' ', -1);
        for (const Button &button : buttons) {
            if (control == button.name)
                check(button.group, button.value);
        }
        bool onTitle = control == "frame_title";
        for (Switch *const pressed : {&tracking, &composed}) {
            if (control != (pressed == &tracking ? "sw_title" : "sw_picture_mode") ||
                pressed->sliding)
                continue;
            *pressed = {!pressed->on, true, false, now};
            slides << pressed;
            onTitle = name == "sw_title"; // which lies on it
        }
        if (onTitle) {
            if (now - titlePressed >= Time(200) && tracking.on)
                showRows(!body);
            titlePressed = now;
        }
    }

    void reset()
    {
        set(tracking, true, false);
        check(&PanelModel::type, 0);
        check(&PanelModel::mode, 1);
        set(composed, false, false);
    }

    void beginSlide(Switch &which, Time now)
    {
        which.since = now;
        slides.removeOne(&which);
        if (which.sliding)
            slides << &which;
    }

    void endSlide(Switch &which)
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

    /// What set-up and the poll make of the camera's bytes; a retry without an answer hides all.
    void setUpFrom(const QByteArray &camera)
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

    void poll(const QByteArray &camera)
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

    void showRows(bool on)
    {
        body = on;
        compositionTitle = on && type == 0;
        compositionRow = compositionTitle && composed.on;
    }

    /// As HostedPanel::shown().
    QString shown() const
    {
        QString words =
            QString(tracking.on ? "on" : "off") + (composed.on ? " composed" : " plain");
        for (const Button &button : buttons) {
            if (this->*button.group == button.value)
                words += ' ' + QString(button.name).section('_', 1, 1);
        }
        return words + (body ? " |spliter" : "") + (compositionTitle ? " |picture_title" : "") +
               (compositionRow ? " |picture_mode" : "");
    }

private:
    using Group = int PanelModel::*;

    void send(const char *command, int value) { sent << QString("%1=%2").arg(command).arg(value); }

    void set(Switch &which, bool on, bool silent)
    {
        if (which.on != on && !which.sliding)
            which = {on, true, silent, which.since};
    }

    // The button that loses its check is reported as well as the one that gains it.
    void check(Group group, int value)
    {
        const int before = std::exchange(this->*group, value);
        if (before == value)
            return;
        const bool isType = group == &PanelModel::type;
        for (const int reported : {before, value}) {
            if (isType || reported != 0)
                send(isType ? "10" : group == &PanelModel::mode ? "07" : "13", reported);
            if (isType)
                sent << "notice";
        }
        if (isType) {
            compositionTitle = type == 0;
            compositionRow = compositionTitle && composed.on;
        }
    }

    int type = 0, mode = 1, picture = 0; // the checked buttons, by the values of their commands
    bool body = true, compositionTitle = true, compositionRow = true;
    Time titlePressed{0};

    const struct Button
    {
        const char *name;
        Group group;
        int value;
    } buttons[8] = {
        {"rb_normal", &PanelModel::type, 0},       {"rb_hand", &PanelModel::type, 1},
        {"rb_whiteboard", &PanelModel::type, 2},   {"rb_normal_mode", &PanelModel::mode, 1},
        {"rb_sport", &PanelModel::mode, 2},        {"wg_half_body", &PanelModel::picture, 1},
        {"wg_full_body", &PanelModel::picture, 2}, {"wg_multi_body", &PanelModel::picture, 3}};
};
