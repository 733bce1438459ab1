#include "errortexts.h"

#include "camera.h"
#include "trackingprotocol.h"

#include <QCoreApplication>
#include <QStringList>

#include <cerrno>
#include <cstring>

namespace {

struct Error
{
    int number;
    const char *cause;
    const char *advice;
};

/// Likely causes. The same number has other causes when a node is opened than during a transfer.
struct Errors
{
    Q_DECLARE_TR_FUNCTIONS(Errors)

public:
    static constexpr const char *list = QT_TR_NOOP("--list-cameras shows the cameras.");
    static constexpr const char *unit =
        QT_TR_NOOP("Check the unit: --list-cameras shows the units.");
    static constexpr const char *again =
        QT_TR_NOOP("Try again; if that does not help, reconnect the camera.");

    static constexpr Error opening[] = {
        {EACCES, QT_TR_NOOP("you do not have access to the camera"),
         QT_TR_NOOP("Add the user to the group \"video\" and log in again.")},
        {EPERM, QT_TR_NOOP("access is not permitted"),
         QT_TR_NOOP("If this program runs in a container, give the container access to the "
                    "camera.")},
        {ENOENT, QT_TR_NOOP("there is no such node"), list},
        {ENODEV, QT_TR_NOOP("the camera was unplugged"), list},
        {ENOTTY, QT_TR_NOOP("this is not a video device"), list},
        {EBUSY, QT_TR_NOOP("another program uses the camera"), QT_TR_NOOP("Close that program.")},
    };

    static constexpr Error transfer[] = {
        {EACCES, QT_TR_NOOP("the camera is in the wrong state"), again},
        {ENOENT, QT_TR_NOOP("there is no such unit or control"), unit},
        {ENODEV, QT_TR_NOOP("the camera was unplugged"), QT_TR_NOOP("Plug it in again.")},
        {ENOTTY, QT_TR_NOOP("this is not a UVC camera"), list},
        {EBUSY, QT_TR_NOOP("the camera is not ready"), again},
        {ENOBUFS, QT_TR_NOOP("the control has a different length"), unit},
        {EINVAL, QT_TR_NOOP("the camera does not accept this value"), unit},
        {ERANGE, QT_TR_NOOP("the value is out of the camera's range"), unit},
        {EREMOTE, QT_TR_NOOP("the camera does not have enough power"),
         QT_TR_NOOP("Connect it without a hub, or to a hub with its own power.")},
        {EBADRQC, QT_TR_NOOP("the control cannot be used this way"), unit},
        {EPIPE, QT_TR_NOOP("the camera refused the request"), again},
        {EPROTO, QT_TR_NOOP("there was an error on the USB connection"),
         QT_TR_NOOP("Try another cable or port, without a hub.")},
        {EIO, QT_TR_NOOP("the camera refused the request, or its answer was too short"), again},
        {ETIMEDOUT, QT_TR_NOOP("the camera did not answer in time"), again},
    };
};

template <size_t size>
QString explain(const Error (&errors)[size], int error)
{
    for (const Error &known : errors) {
        if (known.number == error)
            return QString("%1, %2. %3")
                .arg(errorName(error), Errors::tr(known.cause), Errors::tr(known.advice));
    }
    return QString("%1, %2. %3")
        .arg(errorName(error), qt_error_string(error), Errors::tr("Reconnect the camera."));
}

} // namespace

QString errorName(int error)
{
    const char *const name = strerrorname_np(error);
    return name ? QString(name) : QString("errno %1").arg(error);
}

QString openingError(const QString &node, int error)
{
    return Errors::tr("Opening %1 failed: %2").arg(node, explain(Errors::opening, error));
}

QString transferError(int error)
{
    return explain(Errors::transfer, error);
}

QString refusalText(const CameraRefusal &refusal)
{
    QStringList numbers;
    for (const int unit : refusal.units)
        numbers << QString::number(unit);
    const QString units = numbers.join(", ");
    const bool isCommand = refusal.control == TrackingProtocol::commandSelector;
    const QString control = (isCommand ? Errors::tr("Control %1 of unit %2 cannot be set: %3")
                                       : Errors::tr("Control %1 of unit %2 cannot be read: %3"))
                                .arg(refusal.control)
                                .arg(refusal.unit);
    switch (refusal.reason) {
    case CameraRefusal::NoRefusal:
        break;
    case CameraRefusal::Disconnected:
        return Errors::tr("The camera was unplugged.");
    case CameraRefusal::CannotOpen:
        return openingError(refusal.node, refusal.error);
    case CameraRefusal::NoCaptureNode:
        return Errors::tr("%1 is not a capture node. --list-cameras shows the capture nodes.")
            .arg(refusal.node);
    case CameraRefusal::NoUnit:
        if (units.isEmpty())
            return Errors::tr("%1 has no extension unit.").arg(refusal.node);
        return Errors::tr("%1 has no extension unit with the controls 7 and 8; its units: %2. "
                          "Choose one with --unit.")
            .arg(refusal.node, units);
    case CameraRefusal::SeveralUnits:
        return Errors::tr("%1 has several extension units with the controls 7 and 8: %2. Choose "
                          "one with --unit.")
            .arg(refusal.node, units);
    case CameraRefusal::NoLength:
        return control.arg("GET_LEN: " + transferError(refusal.error));
    case CameraRefusal::WrongLength:
        return control.arg(Errors::tr("it has %1 bytes.").arg(refusal.length));
    case CameraRefusal::NoInfo:
        return control.arg("GET_INFO: " + transferError(refusal.error));
    case CameraRefusal::NotOffered:
        return control.arg(Errors::tr("the camera does not support it."));
    }
    return {};
}
