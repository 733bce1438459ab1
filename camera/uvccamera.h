#pragma once

#include "camera.h"
#include "v4l2nodes.h"

#include <utility>

/// A UVC camera behind a V4L2 node.
///
/// After it was unplugged, open() looks for the same camera at every node: at the same port, or,
/// if it has a serial number, at another port, but only if it was plugged in after the loss. Many
/// cameras share a made-up serial number.
class UvcCamera final : public Camera
{
public:
    /// Does not open the camera. `unit` is the number of its extension unit; 0 selects the only
    /// unit that has both controls. With ReadOnly the command control is not checked, and
    /// sendCommand() returns EPERM.
    UvcCamera(QString node, int unit, Access access)
        : m_name(std::move(node))
        , m_wantedUnit(unit)
        , m_access(access)
    {
    }
    ~UvcCamera() override { close(); }
    Q_DISABLE_COPY(UvcCamera)

    QString name() const override { return m_name; }
    CameraRefusal open() override;

    /// Returns at most 255 bytes, the capacity of a record. A transfer that is too short returns
    /// EIO.
    TransferResult readStatus() override;
    int sendCommand(const QByteArray &command) override;

private:
    CameraRefusal openNode(const QString &path);
    CameraRefusal findAgain();
    bool isThisCamera(const VideoNode &node) const;
    CameraRefusal check(const VideoNode &node);
    CameraRefusal chooseUnit(const VideoNode &node);
    CameraRefusal checkControl(int control, int capability);
    TransferResult transfer(quint8 request, int control, const QByteArray &bytes);
    TransferResult query(quint8 request, int control, QByteArray bytes);
    void lose();
    void close();

    const QString m_name;
    const int m_wantedUnit;
    const Access m_access;
    int m_descriptor = -1;
    dev_t m_number = 0;
    VideoNode m_node; ///< of the camera; `camera` is empty until it has been opened
    int m_unit = 0;
    int m_statusLength = 0;       ///< length of the status control in bytes
    QVector<QByteArray> m_others; ///< VideoNode::plugging of all cameras when this one was lost
    QByteArray m_rejected;        ///< VideoNode::plugging of a camera that can never be used
    CameraRefusal m_rejection;    ///< why
};
