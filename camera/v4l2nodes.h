#pragma once

#include "usbdescriptors.h"

#include <QString>

struct v4l2_capability;

/// A video node, with information about its camera from sysfs.
struct VideoNode
{
    QString path;                  ///< /dev/video0
    QByteArray camera;             ///< identifies the camera: port, interface, vendor, product and
                                   ///< serial number; empty if it is not a USB camera
    QVector<UnitDescriptor> units; ///< of the node's own interface
};

/// Looks up `path`, which may be a link to a node. Does not open the node.
VideoNode videoNode(const QString &path);

/// All nodes in the order of their numbers, including nodes that do not capture.
QVector<VideoNode> videoNodes();

/// Opens a node and queries its capabilities. Returns a file descriptor, which the caller owns, or
/// -1 and sets errno.
int openVideoNode(const QString &path, v4l2_capability *capability);
