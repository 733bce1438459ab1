#pragma once

#include <QByteArray>

/// What came of one transfer.
struct TransferResult
{
    QByteArray bytes; ///< what was read; empty after a write and after a failure
    int error = 0;    ///< 0, or the errno of the failure
};

/// The vendor controls of a camera's extension unit.
///
/// Each call blocks until its transfer is over, which may take seconds. All calls come from one
/// thread, which need not be the one that made the object.
class Camera
{
public:
    virtual ~Camera() = default;

    /// GET_CUR of the control `selector`.
    virtual TransferResult read(int selector) = 0;

    /// SET_CUR of the control `selector`. Nothing is written again by itself.
    virtual TransferResult write(int selector, const QByteArray &bytes) = 0;
};
