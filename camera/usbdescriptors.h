#pragma once

#include <QByteArray>
#include <QUuid>
#include <QVector>

/// An extension unit, from a camera's USB descriptors.
struct UnitDescriptor
{
    int configuration = 0; ///< bConfigurationValue that it belongs to
    int interface = 0;     ///< bInterfaceNumber that it belongs to
    int number = 0;        ///< bUnitID, 1 to 255
    QUuid guid;
    QByteArray controls; ///< bmControls: bit n - 1 stands for control n, lowest bit of the first
                         ///< byte first

    /// Whether the unit has the control `selector`, counted from 1.
    bool has(int selector) const;
};

/// The extension units of all video control interfaces, in the order of `descriptors`: the content
/// of the file of that name in sysfs, with a device descriptor and all configurations. Parsing
/// stops at a malformed descriptor.
QVector<UnitDescriptor> extensionUnits(const QByteArray &descriptors);
