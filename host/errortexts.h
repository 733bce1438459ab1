#pragma once

#include <QString>

struct CameraRefusal;

/// The name of an errno, such as "EIO"; "errno 999" if unknown.
QString errorName(int error);

/// Says that `what` ("Reading control 8") failed, names the error and its likely cause, and gives
/// advice.
QString transferError(const QString &what, int error);

/// Why the camera at `node` cannot be used, with advice.
QString refusalText(const QString &node, const CameraRefusal &refusal);
