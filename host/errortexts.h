#pragma once

#include <QString>

struct CameraRefusal;

/// The name of an errno, such as "EIO"; "errno 999" if unknown.
QString errorName(int error);

/// Says why a node could not be opened, with advice.
QString openingError(const QString &node, int error);

/// Names the error of a transfer and its likely cause, and gives advice: "EIO, the ...".
QString transferError(int error);

/// Why the camera cannot be used, with advice.
QString refusalText(const CameraRefusal &refusal);
