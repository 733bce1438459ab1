#include "errornames.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace {

struct Error
{
    int number;
    const char *name;
    const char *cause;
    const char *advice;
};

constexpr Error errors[] = {
    {EACCES, "EACCES", "this user may not use the camera",
     "Add the user to the group \"video\" and log in again."},
    {EPERM, "EPERM", "it is not permitted",
     "Start without --read-only; a container must be given the camera."},
    {ENOENT, "ENOENT", "there is no such node, unit or control",
     "--list-cameras shows the cameras and their units."},
    {ENODEV, "ENODEV", "the camera was unplugged", "Plug it in again where it was."},
    {ENOTTY, "ENOTTY", "this is not a UVC camera", "--list-cameras shows the cameras."},
    {EBUSY, "EBUSY", "another program uses the camera", "Close that program."},
    {ENOBUFS, "ENOBUFS", "the control has another length",
     "See whether this is the right unit: --list-cameras shows the units."},
    {EINVAL, "EINVAL", "the driver or the camera does not accept these values",
     "See whether this is the right unit: --list-cameras shows the units."},
    {EBADRQC, "EBADRQC", "the control cannot be used this way",
     "See whether this is the right unit: --list-cameras shows the units."},
    {EPIPE, "EPIPE", "the camera refused the request",
     "Try again; if it stays, plug the camera in again."},
    {EPROTO, "EPROTO", "the USB connection was disturbed",
     "Try another cable or port, without a hub."},
    {EIO, "EIO", "the transfer broke off, or its answer was too short",
     "Try again; if it stays, plug the camera in again."},
    {ETIMEDOUT, "ETIMEDOUT", "the camera did not answer in time",
     "Try again; if it stays, plug the camera in again."},
};

const Error *find(int error)
{
    const auto *const found = std::find_if(std::begin(errors), std::end(errors),
                                           [error](const Error &e) { return e.number == error; });
    return found == std::end(errors) ? nullptr : found;
}

} // namespace

QString errorName(int error)
{
    const Error *const known = find(error);
    return known ? QLatin1String(known->name) : QStringLiteral("errno %1").arg(error);
}

QString transferError(const QString &what, int error)
{
    const Error *const known = find(error);
    return QStringLiteral("%1 failed: %2, %3. %4")
        .arg(what, errorName(error), known ? QLatin1String(known->cause) : qt_error_string(error),
             known ? QLatin1String(known->advice) : QLatin1String("Plug the camera in again."));
}
