#pragma once

#include "hostedpanel.h"
#include "panelmodel.h"

/// Plays steps to a panel and to the model of it, on a clock that rules already. The moments at
/// which a slide ends or the camera is read are Qt's affair: the model learns of them, and whether
/// they were due is checked here.
///
/// A step is one of
///   camera=0001000102       the camera's bytes
///   answer=60 answer=text   what its answers hold from now on: bytes, or something foreign
///   obey                    from now on the camera does what it is told
///   insert show hide resize reset
///   wait=100 wait=poll      in ms, or until just before the next poll
///   rb_hand "key sw_title"  the press of a control, or of the space bar on it
class PanelPlayer
{
public:
    PanelPlayer();

    /// What went wrong, beginning with the step; empty if nothing did.
    QString play(const QStringList &steps);

    HostedPanel hosted;

private:
    using Time = PanelModel::Time;

    void take(const QString &step);
    void insert();
    void wait(Time span);
    SwitchButton &buttonOf(const PanelModel::Switch &which);
    void endSlides();
    void meanwhile();
    void read();
    Time untilPoll();

    PanelModel model;
    QVector<PanelModel::Switch *> queued; // slides from the next turn on
    QString fault;
    bool inserted = false;
    bool retrying = false;
    bool obeys = false;
    Time firstPoll{0}, readFrom{0}, readBy{0};
};

/// Steps of a panel's life, chosen by `pick`, which gives a number below its argument.
QStringList chosenSteps(const std::function<int(int)> &pick, int count);
