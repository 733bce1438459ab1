#include "uvccamera.h"

#include "devicerecords.h"
#include "errornames.h"
#include "trackingprotocol.h"

#include <QStringList>
#include <QtEndian>
#include <linux/usb/video.h>
#include <linux/uvcvideo.h>
#include <linux/videodev2.h>

#include <cerrno>
#include <limits>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

UvcCamera::UvcCamera(int unit, Use use)
    : m_unit(unit)
    , m_use(use)
{
}

UvcCamera::~UvcCamera()
{
    close();
}

void UvcCamera::close()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
    m_lengths.clear();
}

std::unique_ptr<UvcCamera> UvcCamera::open(const QString &node, int unit, Use use, QString *refusal)
{
    std::unique_ptr<UvcCamera> camera(new UvcCamera(unit, use));
    camera->m_usb = videoNode(node).usb;
    *refusal = camera->attach(node).text;
    if (!refusal->isEmpty())
        camera.reset();
    return camera;
}

/// Opens the node and asks all that must hold before a transfer.
UvcCamera::Refusal UvcCamera::attach(const QString &path)
{
    v4l2_capability capability = {};
    m_descriptor = openVideoNode(path, &capability);
    if (m_descriptor < 0) {
        const int error = errno;
        return {error, transferError(QStringLiteral("Opening %1").arg(path), error)};
    }

    Refusal refusal;
    // Asked of the open node, whose number goes to no other camera until it is closed.
    const VideoNode node = videoNode(path);
    if (!(node.usb == m_usb))
        refusal = {ENODEV, QStringLiteral("%1 is another camera now.").arg(path)};
    else if (!isCaptureNode(capability))
        refusal = {ENODEV,
                   QStringLiteral("%1 is no capture node; --list-cameras shows those.").arg(path)};
    if (!refusal.error && m_unit == 0)
        refusal = chooseUnit(node);
    if (!refusal.error && m_use == Use::ReadAndWrite)
        refusal =
            ask(TrackingProtocol::commandSelector, QStringLiteral("set"), UVC_CONTROL_CAP_SET);
    if (!refusal.error)
        refusal =
            ask(TrackingProtocol::statusSelector, QStringLiteral("read"), UVC_CONTROL_CAP_GET);
    if (refusal.error)
        close();
    return refusal;
}

UvcCamera::Refusal UvcCamera::chooseUnit(const VideoNode &node)
{
    QStringList all;
    QStringList fitting;
    for (const UnitDescriptor &unit : node.units) {
        all << QString::number(unit.number);
        if (!unit.has(TrackingProtocol::commandSelector) ||
            !unit.has(TrackingProtocol::statusSelector))
            continue;
        fitting << all.last();
        m_unit = unit.number;
    }
    if (fitting.size() == 1)
        return {};
    m_unit = 0;
    const QString comma = QStringLiteral(", ");
    if (fitting.size() > 1)
        return {ENOENT, QStringLiteral("%1 has several extension units with the controls 7 and 8: "
                                       "%2. Choose one with --unit.")
                            .arg(node.path, fitting.join(comma))};
    return {ENOENT, QStringLiteral("%1 has no extension unit with the controls 7 and 8; its units: "
                                   "%2. Choose one with --unit.")
                        .arg(node.path, all.isEmpty() ? QStringLiteral("none") : all.join(comma))};
}

/// Whether a control has a usable length, and can be used for what `capability` says.
UvcCamera::Refusal UvcCamera::ask(int selector, const QString &purpose, int capability)
{
    const QString refused =
        QStringLiteral("Control %1 of unit %2 cannot be %3").arg(selector).arg(m_unit).arg(purpose);
    TransferResult answer = query(UVC_GET_LEN, selector, QByteArray(2, '\0'));
    if (answer.error)
        return {answer.error, transferError(refused + QStringLiteral(": GET_LEN"), answer.error)};
    const int length = qFromLittleEndian<quint16>(answer.bytes.constData());
    const bool isCommand = selector == TrackingProtocol::commandSelector;
    if (isCommand ? length != TrackingProtocol::blockLength : length == 0)
        return {ENOBUFS, QStringLiteral("%1: it has %2 bytes%3.")
                             .arg(refused, QString::number(length),
                                  isCommand ? QStringLiteral(", not 60") : QString())};
    answer = query(UVC_GET_INFO, selector, QByteArray(1, '\0'));
    if (answer.error)
        return {answer.error, transferError(refused + QStringLiteral(": GET_INFO"), answer.error)};
    if (!(answer.bytes.at(0) & capability))
        return {EBADRQC, QStringLiteral("%1: the camera does not offer that.").arg(refused)};
    m_lengths[selector] = length;
    return {};
}

/// 0: the camera is there again and can be used.
int UvcCamera::attachAgain()
{
    int error = ENODEV;
    const auto nodes = videoNodes();
    for (const VideoNode &node : nodes) {
        if (node.usb.interface.isEmpty() || !(node.usb == m_usb))
            continue;
        const int refusal = attach(node.path).error;
        if (refusal == 0)
            return 0;
        // The camera's other nodes refuse with ENODEV, too.
        if (refusal != ENODEV)
            error = refusal;
    }
    return error;
}

TransferResult UvcCamera::read(int selector)
{
    if (m_descriptor < 0) {
        if (const int error = attachAgain())
            return {{}, error};
    }
    if (!m_lengths.contains(selector)) {
        TransferResult length = query(UVC_GET_LEN, selector, QByteArray(2, '\0'));
        if (length.error)
            return length;
        m_lengths[selector] = qFromLittleEndian<quint16>(length.bytes.constData());
    }
    TransferResult answer = query(UVC_GET_CUR, selector, QByteArray(m_lengths[selector], '\0'));
    answer.bytes.truncate(sizeof ExtensionUnit::data);
    return answer;
}

TransferResult UvcCamera::write(int selector, const QByteArray &bytes)
{
    if (m_use == Use::ReadOnly)
        return {{}, EPERM};
    return {{}, query(UVC_SET_CUR, selector, bytes).error};
}

/// One transfer of as many bytes as there are in `bytes`.
TransferResult UvcCamera::query(quint8 request, int selector, QByteArray bytes)
{
    if (m_descriptor < 0)
        return {{}, ENODEV};
    if (selector < 1 || selector > std::numeric_limits<quint8>::max())
        return {{}, ENOENT};
    if (bytes.size() > std::numeric_limits<quint16>::max())
        return {{}, ENOBUFS};

    uvc_xu_control_query transfer = {};
    transfer.unit = quint8(m_unit);
    transfer.selector = quint8(selector);
    transfer.query = request;
    transfer.size = quint16(bytes.size());
    transfer.data = reinterpret_cast<quint8 *>(bytes.data());
    const int result = ::ioctl(m_descriptor, UVCIOC_CTRL_QUERY, &transfer);
    if (result == 0)
        return {bytes, 0};
    // Some kernels give the count of a transfer that was too short.
    const int error = result < 0 ? errno : EIO;
    if (error == ENODEV)
        close();
    return {{}, error};
}
