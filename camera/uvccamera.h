#pragma once

#include "camera.h"
#include "v4l2nodes.h"

#include <QHash>

#include <memory>

/// A UVC camera behind a node of V4L2.
///
/// A transfer that finds the camera unplugged returns ENODEV. From then on each read() looks
/// whether the same camera is there again, under any node, and if so puts to it the questions of
/// open() and reads. Until one succeeds, read() returns ENODEV or what keeps the camera that came
/// back from being used, and write() returns ENODEV at once.
class UvcCamera final : public Camera
{
public:
    enum class Use { ReadOnly, ReadAndWrite };

    /// Opens the camera at `node`, without writing anything to it. `unit` is the number of its
    /// extension unit; 0: the only one that has both controls. A camera that is only read from may
    /// have a command control that cannot be used; write() returns EPERM. If the camera cannot be
    /// used, null is returned and `refusal` says why. May block for some seconds.
    static std::unique_ptr<UvcCamera> open(const QString &node, int unit, Use use,
                                           QString *refusal);
    ~UvcCamera() override;
    Q_DISABLE_COPY(UvcCamera)

    /// No more than fit into a record: at most 255 bytes. An answer that is too short is EIO.
    TransferResult read(int selector) override;
    TransferResult write(int selector, const QByteArray &bytes) override;

    int unit() const { return m_unit; }

private:
    struct Refusal
    {
        int error = 0;
        QString text;
    };

    UvcCamera(int unit, Use use);
    Refusal attach(const QString &path);
    Refusal chooseUnit(const VideoNode &node);
    Refusal ask(int selector, const QString &purpose, int capability);
    int attachAgain();
    TransferResult query(quint8 request, int selector, QByteArray bytes);
    void close();

    int m_unit;
    const Use m_use;
    UsbIdentity m_usb;
    int m_descriptor = -1;
    QHash<int, int> m_lengths; ///< by selector; of this connection
};
