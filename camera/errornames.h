#pragma once

#include <QString>

/// The name of an errno, such as "EIO"; its number if it has no name here.
QString errorName(int error);

/// A sentence for the user: what failed, and why in plain words.
QString transferError(const QString &what, int error);
