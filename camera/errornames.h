#pragma once

#include <QString>

/// The name of an errno, "EIO"; its number, "errno 999", if it is none that a transfer has.
QString errorName(int error);

/// Two sentences: that `what` ("Reading control 8") failed with the errno `error` and the likely
/// cause, and what to do.
QString transferError(const QString &what, int error);
