#pragma once

#include "camera.h"
#include "trackingprotocol.h"

#include <QElapsedTimer>

#include <map>

/// How the camera does, and what the queue is doing.
struct CameraCondition
{
    enum State { Opening, Refused, Connected, Failing };

    struct FailedCommand
    {
        quint8 value;
        int error; ///< errno
    };

    State state = Opening;
    bool readOnly = false;
    CameraRefusal refusal; ///< why the camera cannot be used if it is refused
    int error = 0;         ///< errno of the last status read if it failed
    /// The settings whose last command failed.
    std::map<TrackingProtocol::Field, FailedCommand> failedCommands = {};
    int waiting = 0;            ///< number of commands that wait
    QElapsedTimer running = {}; ///< since the transfer in flight began; invalid if there is none
};
