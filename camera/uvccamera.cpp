#include "uvccamera.h"

#include "devicerecords.h"
#include "trackingprotocol.h"

#include <QtEndian>
#include <linux/usb/video.h>
#include <linux/uvcvideo.h>
#include <linux/videodev2.h>

#include <algorithm>
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

void UvcCamera::lose()
{
    close();
    m_others.clear();
    const auto nodes = videoNodes();
    for (const VideoNode &node : nodes)
        m_others << node.plugging;
}

CameraRefusal UvcCamera::open()
{
    if (m_descriptor >= 0) {
        // While the node is open, its number cannot pass to another camera.
        if (videoNode(m_number).plugging == m_node.plugging)
            return {};
        lose();
    }
    return m_node.camera.isEmpty() ? openNode(m_name) : findAgain();
}

CameraRefusal UvcCamera::openNode(const QString &path)
{
    v4l2_capability capability = {};
    m_descriptor = openVideoNode(path, &capability, &m_number);
    if (m_descriptor < 0)
        return {CameraRefusal::CannotOpen, errno, path};
    const VideoNode node = videoNode(m_number);
    CameraRefusal refusal = {CameraRefusal::NoCaptureNode, ENODEV};
    if (capability.device_caps & V4L2_CAP_VIDEO_CAPTURE)
        refusal = check(node);
    refusal.node = path;
    if (refusal.error)
        close();
    else
        m_node = node;
    return refusal;
}

/// Looks for the camera after it was lost.
CameraRefusal UvcCamera::findAgain()
{
    CameraRefusal refusal = {CameraRefusal::Disconnected, ENODEV, m_name};
    auto nodes = videoNodes();
    std::stable_partition(nodes.begin(), nodes.end(),
                          [this](const VideoNode &node) { return node.port == m_node.port; });
    for (const VideoNode &node : qAsConst(nodes)) {
        if (!isThisCamera(node))
            continue;
        CameraRefusal found = openNode(node.path);
        if (found.error == 0)
            return found;
        // The camera's metadata node does not capture.
        if (refusal.reason == CameraRefusal::Disconnected &&
            found.reason != CameraRefusal::NoCaptureNode)
            refusal = found;
    }
    return refusal;
}

bool UvcCamera::isThisCamera(const VideoNode &node) const
{
    if (m_node.camera.isEmpty())
        return true;
    return node.camera == m_node.camera &&
           (node.port == m_node.port || (node.hasSerial && !m_others.contains(node.plugging)));
}

CameraRefusal UvcCamera::check(const VideoNode &node)
{
    if (!isThisCamera(node))
        return {CameraRefusal::Disconnected, ENODEV};
    // Do not ask again for what cannot change: queries in a loop make some cameras hang.
    if (!m_rejected.isEmpty() && node.plugging == m_rejected)
        return m_rejection;
    CameraRefusal refusal = chooseUnit(node);
    if (!refusal.error && m_access == ReadWrite)
        refusal = checkControl(commandSelector, UVC_CONTROL_CAP_SET);
    if (!refusal.error)
        refusal = checkControl(statusSelector, UVC_CONTROL_CAP_GET);
    if (refusal.reason == CameraRefusal::WrongLength ||
        refusal.reason == CameraRefusal::NotOffered) {
        m_rejected = node.plugging;
        m_rejection = refusal;
    }
    return refusal;
}

CameraRefusal UvcCamera::chooseUnit(const VideoNode &node)
{
    m_unit = m_wantedUnit;
    if (m_unit != 0)
        return {};
    QVector<int> all;
    QVector<int> fitting;
    for (const UnitDescriptor &unit : node.units) {
        all << unit.number;
        if (unit.has(commandSelector) && unit.has(statusSelector))
            fitting << unit.number;
    }
    if (fitting.isEmpty())
        return {CameraRefusal::NoUnit, ENOENT, {}, all};
    if (fitting.size() > 1)
        return {CameraRefusal::SeveralUnits, ENOENT, {}, fitting};
    m_unit = fitting.first();
    return {};
}

/// Checks that a control has a usable length and the `capability`.
CameraRefusal UvcCamera::checkControl(int control, int capability)
{
    const auto refusal = [&](CameraRefusal::Reason reason, int error, int length = 0) {
        return CameraRefusal{reason, error, {}, {}, m_unit, control, length};
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

TransferResult UvcCamera::readStatus()
{
    TransferResult answer = transfer(UVC_GET_CUR, statusSelector, QByteArray(m_statusLength, '\0'));
    answer.bytes.truncate(sizeof ExtensionUnit::data);
    return answer;
}

int UvcCamera::sendCommand(const QByteArray &command)
{
    return m_access == ReadOnly ? EPERM : transfer(UVC_SET_CUR, commandSelector, command).error;
}

TransferResult UvcCamera::transfer(quint8 request, int control, const QByteArray &bytes)
{
    if (m_descriptor < 0)
        return {{}, ENODEV};
    TransferResult result = query(request, control, bytes);
    if (result.error == ENODEV)
        lose();
    return result;
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
    return {{}, result < 0 ? errno : EIO};
}
