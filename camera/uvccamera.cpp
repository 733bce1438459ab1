#include "uvccamera.h"

#include "devicerecords.h"
#include "trackingprotocol.h"

#include <QtEndian>
#include <linux/usb/video.h>
#include <linux/uvcvideo.h>
#include <linux/videodev2.h>

#include <cerrno>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

using namespace TrackingProtocol;

void UvcCamera::close()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}

std::unique_ptr<UvcCamera> UvcCamera::open(const QString &node, int unit, Use use,
                                           CameraRefusal *refusal)
{
    std::unique_ptr<UvcCamera> camera(new UvcCamera(unit, use));
    camera->m_camera = videoNode(node).camera;
    *refusal = camera->attach(node);
    if (refusal->error)
        camera.reset();
    return camera;
}

/// Opens the node and checks the camera. If a check fails, the node stays open.
CameraRefusal UvcCamera::attach(const QString &path)
{
    v4l2_capability capability = {};
    m_descriptor = openVideoNode(path, &capability);
    if (m_descriptor < 0)
        return {CameraRefusal::CannotOpen, errno};

    // While the node is open, its number cannot pass to another camera.
    const VideoNode node = videoNode(path);
    if (node.camera != m_camera)
        return {CameraRefusal::ReplacedCamera, ENODEV};
    if (!(capability.device_caps & V4L2_CAP_VIDEO_CAPTURE))
        return {CameraRefusal::NoCaptureNode, ENODEV};
    CameraRefusal refusal;
    if (m_unit == 0)
        refusal = chooseUnit(node);
    if (!refusal.error && m_use == Use::ReadAndWrite)
        refusal = checkControl(commandSelector, UVC_CONTROL_CAP_SET);
    return refusal.error ? refusal : checkControl(statusSelector, UVC_CONTROL_CAP_GET);
}

CameraRefusal UvcCamera::chooseUnit(const VideoNode &node)
{
    QVector<int> all;
    QVector<int> fitting;
    for (const UnitDescriptor &unit : node.units) {
        all << unit.number;
        if (unit.has(commandSelector) && unit.has(statusSelector))
            fitting << unit.number;
    }
    if (fitting.isEmpty())
        return {CameraRefusal::NoUnit, ENOENT, all};
    if (fitting.size() > 1)
        return {CameraRefusal::SeveralUnits, ENOENT, fitting};
    m_unit = fitting.first();
    return {};
}

/// Checks that a control has a usable length and the `capability`.
CameraRefusal UvcCamera::checkControl(int control, int capability)
{
    const auto refusal = [&](CameraRefusal::Reason reason, int error, int length = 0) {
        return CameraRefusal{reason, error, {}, m_unit, control, length};
    };
    TransferResult answer = query(UVC_GET_LEN, control, QByteArray(2, '\0'));
    if (answer.error)
        return refusal(CameraRefusal::NoLength, answer.error);
    const int length = qFromLittleEndian<quint16>(answer.bytes.constData());
    if (control == commandSelector ? length != blockLength : length == 0)
        return refusal(CameraRefusal::WrongLength, ENOBUFS, length);
    answer = query(UVC_GET_INFO, control, QByteArray(1, '\0'));
    if (answer.error)
        return refusal(CameraRefusal::NoInfo, answer.error);
    if (!(answer.bytes.at(0) & capability))
        return refusal(CameraRefusal::NotOffered, EBADRQC);
    if (control == statusSelector)
        m_statusLength = length;
    return {};
}

/// Looks for the camera after it was unplugged. Returns 0 if it is back and can be used.
int UvcCamera::attachAgain()
{
    int error = ENODEV;
    const auto nodes = videoNodes();
    for (const VideoNode &node : nodes) {
        if (node.camera.isEmpty() || node.camera != m_camera)
            continue;
        const int refusal = attach(node.path).error;
        if (refusal == 0)
            return 0;
        close();
        // Ignore ENODEV: the camera's metadata node also causes it.
        if (refusal != ENODEV)
            error = refusal;
    }
    return error;
}

TransferResult UvcCamera::readStatus()
{
    if (m_descriptor < 0) {
        if (const int error = attachAgain())
            return {{}, error};
    }
    TransferResult answer = query(UVC_GET_CUR, statusSelector, QByteArray(m_statusLength, '\0'));
    answer.bytes.truncate(sizeof ExtensionUnit::data);
    return answer;
}

int UvcCamera::sendCommand(const QByteArray &command)
{
    if (m_use == Use::ReadOnly)
        return EPERM;
    if (m_descriptor < 0)
        return ENODEV;
    return query(UVC_SET_CUR, commandSelector, command).error;
}

/// Performs one transfer of bytes.size() bytes.
TransferResult UvcCamera::query(quint8 request, int control, QByteArray bytes)
{
    uvc_xu_control_query transfer = {quint8(m_unit), quint8(control), request,
                                     quint16(bytes.size()),
                                     reinterpret_cast<quint8 *>(bytes.data())};
    const int result = ::ioctl(m_descriptor, UVCIOC_CTRL_QUERY, &transfer);
    if (result == 0)
        return {bytes, 0};
    // Some kernels return the number of bytes if a transfer was too short.
    const int error = result < 0 ? errno : EIO;
    if (error == ENODEV)
        close();
    return {{}, error};
}
