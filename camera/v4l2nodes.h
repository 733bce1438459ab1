#pragma once

#include "usbdescriptors.h"

#include <QString>

struct v4l2_capability;

/// What tells one USB camera from another, however often it is plugged in.
struct UsbIdentity
{
    QString interface; ///< sysfs's name with the port, the configuration and the number: 1-2.3:1.0
    QString vendor;    ///< four hexadecimal digits
    QString product;   ///< four hexadecimal digits
    QString serial;    ///< empty: the camera has none

    bool operator==(const UsbIdentity &other) const;
};

/// A video node and what sysfs tells of the camera behind it, without opening anything.
struct VideoNode
{
    QString path;                  ///< /dev/video0
    UsbIdentity usb;               ///< empty if it is not a USB camera or has gone
    QVector<UnitDescriptor> units; ///< those that the node's own interface has
};

/// Of `path`, or of the node that the link `path` leads to.
VideoNode videoNode(const QString &path);

/// All nodes in the order of their numbers, those that deliver no pictures too.
QVector<VideoNode> videoNodes();

/// Opens a node and asks what it is. The caller owns the descriptor; -1: see errno.
int openVideoNode(const QString &path, v4l2_capability *capability);
bool isCaptureNode(const v4l2_capability &capability);

/// In words: each capture node, and the extension units of its camera; or that there is no camera.
QString listCameras();
