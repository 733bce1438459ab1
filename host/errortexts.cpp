#include "errortexts.h"

#include "trackingprotocol.h"
#include "uvccamera.h"

#include <QStringList>

#include <cerrno>

namespace {

struct Error
{
    int number;
    const char *name;
    const char *cause;
    const char *advice;
};

constexpr const char *tryAgain = "Try again; if that does not help, reconnect the camera.";
constexpr const char *checkUnit = "Check the unit: --list-cameras shows the units.";

constexpr Error errors[] = {
    {EACCES, "EACCES", "you do not have access to the camera",
     "Add the user to the group \"video\" and log in again."},
    {EPERM, "EPERM", "access is not permitted",
     "If this program runs in a container, give the container access to the camera."},
    {ENOENT, "ENOENT", "there is no such node, unit or control",
     "--list-cameras shows the cameras and their units."},
    {ENODEV, "ENODEV", "the camera was unplugged", "Plug it into the same port again."},
    {ENOTTY, "ENOTTY", "this is not a UVC camera", "--list-cameras shows the cameras."},
    {EBUSY, "EBUSY", "another program uses the camera", "Close that program."},
    {ENOBUFS, "ENOBUFS", "the control has a different length", checkUnit},
    {EINVAL, "EINVAL", "the driver or the camera does not accept these values", checkUnit},
    {EBADRQC, "EBADRQC", "the control cannot be used this way", checkUnit},
    {EPIPE, "EPIPE", "the camera refused the request", tryAgain},
    {EPROTO, "EPROTO", "there was an error on the USB connection",
     "Try another cable or port, without a hub."},
    {EIO, "EIO", "the transfer was interrupted, or the answer was too short", tryAgain},
    {ETIMEDOUT, "ETIMEDOUT", "the camera did not answer in time", tryAgain},
};

const Error *find(int error)
{
    for (const Error &known : errors) {
        if (known.number == error)
            return &known;
    }
    return nullptr;
}

} // namespace

QString errorName(int error)
{
    const Error *const known = find(error);
    return known ? QString(known->name) : QString("errno %1").arg(error);
}

QString transferError(const QString &what, int error)
{
    const Error *const known = find(error);
    return QString("%1 failed: %2, %3. %4")
        .arg(what, errorName(error), known ? known->cause : qt_error_string(error),
             known ? known->advice : "Reconnect the camera.");
}

QString refusalText(const QString &node, const CameraRefusal &refusal)
{
    QStringList numbers;
    for (const int unit : refusal.units)
        numbers << QString::number(unit);
    const QString units =
        (numbers.isEmpty() ? "none" : numbers.join(", ")) + ". Choose one with --unit.";
    const bool isCommand = refusal.control == TrackingProtocol::commandSelector;
    const QString control = QString("Control %1 of unit %2 cannot be %3")
                                .arg(refusal.control)
                                .arg(refusal.unit)
                                .arg(isCommand ? "set" : "read");
    switch (refusal.reason) {
    case CameraRefusal::NoRefusal:
        break;
    case CameraRefusal::CannotOpen:
        return transferError("Opening " + node, refusal.error);
    case CameraRefusal::ReplacedCamera:
        return node + " now belongs to another camera.";
    case CameraRefusal::NoCaptureNode:
        return node + " is not a capture node. --list-cameras shows the capture nodes.";
    case CameraRefusal::NoUnit:
        return node + " has no extension unit with the controls 7 and 8; its units: " + units;
    case CameraRefusal::SeveralUnits:
        return node + " has several extension units with the controls 7 and 8: " + units;
    case CameraRefusal::NoLength:
        return transferError(control + ": GET_LEN", refusal.error);
    case CameraRefusal::WrongLength:
        return control + QString(": it has %1 bytes").arg(refusal.length) +
               (isCommand ? ", not 60." : ".");
    case CameraRefusal::NoInfo:
        return transferError(control + ": GET_INFO", refusal.error);
    case CameraRefusal::NotOffered:
        return control + ": the camera does not support it.";
    }
    return {};
}
