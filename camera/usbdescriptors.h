#pragma once

#include <QByteArray>
#include <QUuid>
#include <QVector>

/// An extension unit as a camera's USB descriptors announce it.
struct UnitDescriptor
{
    int configuration = 0; ///< bConfigurationValue of where it stands
    int interface = 0;     ///< bInterfaceNumber of where it stands
    int number = 0;        ///< bUnitID, 1 to 255
    QUuid guid;
    QByteArray controls; ///< bmControls: bit n - 1, counted from the first byte, is control n

    /// Whether the unit has the control `selector`, counted from 1.
    bool has(int selector) const;
};

/// The extension units of all video control interfaces, in the order of `descriptors`, which is
/// what sysfs gives under that name: a device descriptor and all configurations. Broken bytes end
/// it.
QVector<UnitDescriptor> extensionUnits(const QByteArray &descriptors);
