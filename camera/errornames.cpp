#include "errornames.h"

#include <cerrno>

namespace {

constexpr struct
{
    int error;
    const char *name;
    const char *words;
} errors[] = {
    {EIO, "EIO", "the transfer broke off"},
    {EPIPE, "EPIPE", "the camera refuses it"},
    {EPROTO, "EPROTO", "the answer was garbled on the wire"},
    {EBUSY, "EBUSY", "the camera is busy"},
    {EINVAL, "EINVAL", "the camera does not take this value"},
    {ENOBUFS, "ENOBUFS", "the length is not the control's"},
    {ETIMEDOUT, "ETIMEDOUT", "the camera did not answer in time"},
    {ENODEV, "ENODEV", "the camera is not there any more"},
};

} // namespace

QString errorName(int error)
{
    for (const auto &known : errors) {
        if (known.error == error)
            return QString::fromLatin1(known.name);
    }
    return QString::number(error);
}

QString transferError(const QString &what, int error)
{
    const char *words = "an error without a name";
    for (const auto &known : errors) {
        if (known.error == error)
            words = known.words;
    }
    return QStringLiteral("%1 failed: %2 (%3).")
        .arg(what, QString::fromLatin1(words), errorName(error));
}
