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
        ReplacedCamera, ///< another camera got the node while it was being opened
        NoCaptureNode,
        NoUnit,       ///< no unit has both controls; `units` lists all units
        SeveralUnits, ///< several units have both controls; `units` lists those
        NoLength,     ///< the length of `control` of `unit` cannot be read
        WrongLength,  ///< `control` of `unit` has `length` bytes
        NoInfo,       ///< the capabilities of `control` of `unit` cannot be read
        NotOffered,   ///< `control` of `unit` cannot be set (commands) or read (status)
    };

    Reason reason = NoRefusal;
    int error = 0; ///< errno; 0 only with NoRefusal
    QVector<int> units = {};
    int unit = 0;
    int control = 0;
    int length = 0;
};

/// A UVC camera behind a V4L2 node.
///
/// A transfer returns ENODEV if the camera was unplugged. From then on, each readStatus() looks for
/// the same camera at every node. Once it is back, readStatus() checks it like open() and reads.
/// Until then, readStatus() returns ENODEV, or another errno if the camera is back but fails a
/// check, and sendCommand() returns ENODEV at once.
class UvcCamera final : public Camera
{
public:
    enum class Use { ReadOnly, ReadAndWrite };

    /// Opens the camera at `node` and checks it, without changing its settings. `unit` is the
    /// number of its extension unit; 0 selects the only unit that has both controls. With ReadOnly
    /// the command control is not checked, and sendCommand() returns EPERM. Returns null and sets
    /// `refusal` if the camera cannot be used. May block for several seconds.
    static std::unique_ptr<UvcCamera> open(const QString &node, int unit, Use use,
                                           CameraRefusal *refusal);
    ~UvcCamera() override { close(); }
    Q_DISABLE_COPY(UvcCamera)

    /// Returns at most 255 bytes, the capacity of a record. A transfer that is too short returns
    /// EIO.
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
    int m_statusLength = 0; ///< length of the status control in bytes; set by attach()
};
