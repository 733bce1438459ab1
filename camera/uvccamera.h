#pragma once

#include "camera.h"
#include "v4l2nodes.h"

#include <memory>

/// Why a camera cannot be used.
struct CameraRefusal
{
    enum Reason {
        NoRefusal,
        CannotOpen,
        ReplacedCamera, ///< another camera took the node's name while it was being opened
        NoCaptureNode,
        NoUnit,       ///< `units` has all units, none with both controls
        SeveralUnits, ///< `units` has those with both controls
        NoLength,     ///< the length of `control` of `unit` cannot be read
        WrongLength,  ///< `length` bytes
        NoInfo,       ///< the capabilities of `control` of `unit` cannot be read
        NotOffered,   ///< `control` of `unit` cannot be set, or cannot be read
    };

    Reason reason = NoRefusal;
    int error = 0; ///< errno; never 0 in a refusal
    QVector<int> units = {};
    int unit = 0;
    int control = 0;
    int length = 0;
};

/// A UVC camera behind a V4L2 node.
///
/// A transfer that finds the camera unplugged returns ENODEV. After that, each readStatus() looks
/// for the same camera under any node and, if it is back, checks it like open() before it reads.
/// Until such a read succeeds, readStatus() returns ENODEV, or the errno that keeps the returned
/// camera from being used, and sendCommand() returns ENODEV at once.
class UvcCamera final : public Camera
{
public:
    enum class Use { ReadOnly, ReadAndWrite };

    /// Opens the camera at `node` without changing anything in it. `unit` is the number of its
    /// extension unit; 0 stands for the only unit that has both controls. With ReadOnly the command
    /// control is not checked, and sendCommand() returns EPERM. Returns null and sets `refusal` if
    /// the camera cannot be used. Can block for several seconds.
    static std::unique_ptr<UvcCamera> open(const QString &node, int unit, Use use,
                                           CameraRefusal *refusal);
    ~UvcCamera() override { close(); }
    Q_DISABLE_COPY(UvcCamera)

    /// Returns at most 255 bytes, which is what a record can hold. A short transfer returns EIO.
    TransferResult readStatus() override;
    int sendCommand(const QByteArray &command) override;

private:
    UvcCamera(int unit, Use use)
        : m_unit(unit)
        , m_use(use)
    {
    }
    CameraRefusal attach(const QString &path);
    CameraRefusal chooseUnit(const VideoNode &node);
    CameraRefusal checkControl(int control, int capability);
    int attachAgain();
    TransferResult query(quint8 request, int control, QByteArray bytes);
    void close();

    int m_unit;
    const Use m_use;
    QByteArray m_camera; ///< VideoNode::camera
    int m_descriptor = -1;
    int m_statusLength = 0; ///< bytes; of the current connection
};
