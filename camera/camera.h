#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// Why a camera cannot be used.
struct CameraRefusal
{
    enum Reason {
        NoRefusal,
        Disconnected,
        CannotOpen, ///< `node` cannot be opened, or is not a video device
        NoCaptureNode,
        NoUnit,       ///< no unit has both controls; `units` lists all units
        SeveralUnits, ///< several units have both controls; `units` lists those
        NoLength,     ///< the length of `control` of `unit` cannot be read
        WrongLength,  ///< `control` of `unit` has `length` bytes
        NoInfo,       ///< the capabilities of `control` of `unit` cannot be read
        NotOffered,   ///< `control` of `unit` cannot be set (commands) or read (status)
    };

    Reason reason = NoRefusal;
    int error = 0; ///< errno; 0 only with NoRefusal
    QString node = {};
    QVector<int> units = {};
    int unit = 0;
    int control = 0;
    int length = 0;
};

/// The result of a transfer that reads from the camera.
struct TransferResult
{
    QByteArray bytes; ///< empty if the read failed
    int error = 0;    ///< errno; 0: success
};

/// A tracking camera.
///
/// Each call blocks until its transfers have ended, which may take seconds. All calls come from one
/// thread, not necessarily the one that created the object, except name().
class Camera
{
public:
    enum Access { ReadWrite, ReadOnly };

    virtual ~Camera() = default;

    /// The camera's node, or another name for messages. May be called from any thread.
    virtual QString name() const = 0;

    /// Opens the camera if it is not open or was unplugged, and checks that it can be used. Does
    /// not change its settings. The error of the result is 0 if the camera can be used; it is
    /// checked only when it is opened, so calling this once a second costs no transfers.
    virtual CameraRefusal open() = 0;

    /// Reads the status block. Returns ENODEV if the camera is not open or was unplugged.
    virtual TransferResult readStatus() = 0;

    /// Sends a command, without retries. Returns 0 or an errno, ENODEV as above.
    virtual int sendCommand(const QByteArray &command) = 0;
};
