#pragma once

#include "usbdescriptors.h"

#include <QString>

struct v4l2_capability;

/// A video node and what sysfs knows about its camera.
struct VideoNode
{
    QString path;                  ///< /dev/video0
    QByteArray camera;             ///< port, interface, vendor, product and serial number, so that
                                   ///< a camera can be found again; empty without a USB camera
    QVector<UnitDescriptor> units; ///< those of the node's own interface
};

/// Looks up `path`, which may be a link to a node. Opens nothing.
VideoNode videoNode(const QString &path);

/// All nodes in the order of their numbers, including nodes that do not capture.
QVector<VideoNode> videoNodes();

/// Opens a node and queries its capabilities. The caller owns the descriptor; -1: see errno.
int openVideoNode(const QString &path, v4l2_capability *capability);
