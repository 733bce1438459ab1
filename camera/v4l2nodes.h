#pragma once

#include "usbdescriptors.h"

#include <QString>

#include <sys/types.h>

struct v4l2_capability;

/// A video node, with information about its camera from sysfs.
struct VideoNode
{
    QString path;        ///< /dev/video0
    QByteArray camera;   ///< interface, vendor, product and serial number, which identical cameras
                         ///< may share; empty if it is not a USB camera
    QByteArray port;     ///< where the camera is plugged in: 1-2.3
    QByteArray plugging; ///< the port and a number that changes whenever a camera is plugged in
    bool hasSerial = false;
    QVector<UnitDescriptor> units; ///< of the node's own interface
};

/// The node with this device number.
VideoNode videoNode(dev_t number);

/// All nodes in the order of their numbers, including nodes that do not capture.
QVector<VideoNode> videoNodes();

/// Opens a node and queries its capabilities and device number. Returns a file descriptor, which
/// the caller owns, or -1 and sets errno: ENOTTY if `path` is not a video device, which it does not
/// open then.
int openVideoNode(const QString &path, v4l2_capability *capability, dev_t *number = nullptr);
