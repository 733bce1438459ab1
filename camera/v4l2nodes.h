#pragma once

#include "usbdescriptors.h"

#include <QString>

struct v4l2_capability;

/// Identifies a USB camera, also after it was plugged in again.
struct UsbIdentity
{
    QString interface; ///< name in sysfs, with port, configuration and number: 1-2.3:1.0
    QString vendor;    ///< four hexadecimal digits
    QString product;   ///< four hexadecimal digits
    QString serial;    ///< empty if the camera has none

    bool operator==(const UsbIdentity &other) const;
};

/// A video node and what sysfs knows about its camera.
struct VideoNode
{
    QString path;                  ///< /dev/video0
    UsbIdentity usb;               ///< empty unless it is a USB camera that is plugged in
    QVector<UnitDescriptor> units; ///< those of the node's own interface
};

/// Looks up `path`, which may be a link to a node. Opens nothing.
VideoNode videoNode(const QString &path);

/// All nodes in the order of their numbers, including nodes that do not capture.
QVector<VideoNode> videoNodes();

/// Opens a node and queries its capabilities. The caller owns the descriptor; -1: see errno.
int openVideoNode(const QString &path, v4l2_capability *capability);
bool isCaptureNode(const v4l2_capability &capability);
