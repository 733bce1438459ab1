#pragma once

#include <QByteArray>

/// The result of a transfer that reads from the camera.
struct TransferResult
{
    QByteArray bytes; ///< empty if the read failed
    int error = 0;    ///< errno; 0: success
};

/// A tracking camera.
///
/// Each call blocks until its transfer has ended, which may take seconds. All calls come from one
/// thread, not necessarily the one that created the object.
class Camera
{
public:
    virtual ~Camera() = default;

    /// Reads the status block.
    virtual TransferResult readStatus() = 0;

    /// Sends a command, without retries. Returns 0 or an errno.
    virtual int sendCommand(const QByteArray &command) = 0;
};
