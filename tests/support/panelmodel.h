#pragma once

#include <QStringList>
#include <QVector>

#include <chrono>

/// What the panel must show and send, by its rules alone. Told what its user and its host do, what
/// it reads, and when slides begin and end.
class PanelModel
{
public:
    using Time = std::chrono::milliseconds;

    struct Switch
    {
        bool on = false;
        bool sliding = false;
        bool silent = false;
        Time since{0}; ///< when the slide began
    };

    Switch tracking, composed;
    QVector<Switch *> slides; ///< in the order in which they end
    QStringList sent;

    /// A press of a control, or of a key on it ("key sw_title").
    void press(const QString &name, Time now);
    void reset();
    void beginSlide(Switch &which, Time now);
    void endSlide(Switch &which);

    /// What set-up and the poll make of the camera's bytes; a retry without an answer hides all.
    void setUpFrom(const QByteArray &camera);
    void poll(const QByteArray &camera);
    void showRows(bool on);

    /// As HostedPanel::shown().
    QString shown() const;

private:
    using Group = int PanelModel::*;
    struct Button
    {
        const char *name;
        Group group;
        int value;
    };
    static const Button buttons[];

    void send(const char *command, int value) { sent << QString("%1=%2").arg(command).arg(value); }
    void set(Switch &which, bool on, bool silent);
    void check(Group group, int value);
    void pressTitle(Time now);

    int type = 0, mode = 1, picture = 0; // the checked buttons, by the values of their commands
    bool body = true, compositionTitle = true, compositionRow = true;
    Time titlePressed{0};
};
