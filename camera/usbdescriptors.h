#pragma once

#include <QByteArray>
#include <QUuid>
#include <QVector>

/// An extension unit, from a camera's USB descriptors.
struct UnitDescriptor
{
    int configuration = 0; ///< bConfigurationValue of its configuration
    int interface = 0;     ///< bInterfaceNumber of its interface
    int number = 0;        ///< bUnitID, 1 to 255
    QUuid guid;
    QByteArray controls; ///< bmControls: bit n - 1 stands for control n; bit 0 is the lowest of
                         ///< the first byte

    /// Whether the unit has the control `selector`. The first control is 1.
    bool has(int selector) const;
};

/// The extension units of all video control interfaces, in the order of `descriptors`. These are
/// the content of the file "descriptors" in sysfs: the device descriptor and all configurations.
/// Parsing stops at a descriptor with an impossible length. Malformed units are left out.
QVector<UnitDescriptor> extensionUnits(const QByteArray &descriptors);
