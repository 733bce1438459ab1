#include "usbdescriptors.h"

#include <QtEndian>
#include <linux/usb/ch9.h>
#include <linux/usb/video.h>

#include <algorithm>

bool UnitDescriptor::has(int selector) const
{
    const int bit = selector - 1;
    return bit >= 0 && bit < 8 * controls.size() && (controls[bit / 8] >> (bit % 8) & 1);
}

/// Reads an extension unit's descriptor. Returns false if its lengths are inconsistent.
static bool readUnit(const uchar *bytes, int length, UnitDescriptor *unit)
{
    constexpr int inputs = 21; // offset of bNrInPins, the number of bytes that follow it
    const int controlSize = inputs + 1 + (length > inputs ? bytes[inputs] : 0);
    if (length <= controlSize || length - controlSize <= bytes[controlSize] || bytes[3] == 0)
        return false;
    unit->number = bytes[3];
    uchar rest[8];
    std::copy(bytes + 12, bytes + 20, rest);
    unit->guid = QUuid(qFromLittleEndian<quint32>(bytes + 4), qFromLittleEndian<quint16>(bytes + 8),
                       qFromLittleEndian<quint16>(bytes + 10), rest[0], rest[1], rest[2], rest[3],
                       rest[4], rest[5], rest[6], rest[7]);
    unit->controls = QByteArray(reinterpret_cast<const char *>(bytes + controlSize + 1),
                                int(bytes[controlSize]));
    return true;
}

QVector<UnitDescriptor> extensionUnits(const QByteArray &descriptors)
{
    QVector<UnitDescriptor> units;
    UnitDescriptor unit;
    bool inVideoControl = false;
    const auto *bytes = reinterpret_cast<const uchar *>(descriptors.constData());
    const uchar *const end = bytes + descriptors.size();
    // After an impossible length, the start of the next descriptor is unknown.
    while (end - bytes >= 2 && bytes[0] >= 2 && bytes[0] <= end - bytes) {
        const int length = bytes[0];
        const int type = bytes[1];
        if (type == USB_DT_CONFIG) {
            unit.configuration = length >= USB_DT_CONFIG_SIZE ? bytes[5] : 0;
            inVideoControl = false;
        } else if (type == USB_DT_INTERFACE) {
            inVideoControl = length >= USB_DT_INTERFACE_SIZE && bytes[5] == USB_CLASS_VIDEO &&
                             bytes[6] == UVC_SC_VIDEOCONTROL;
            unit.interface = inVideoControl ? bytes[2] : 0;
        } else if (type == USB_DT_CS_INTERFACE && inVideoControl && length > 2 &&
                   bytes[2] == UVC_VC_EXTENSION_UNIT && readUnit(bytes, length, &unit)) {
            units << unit;
        }
        bytes += length;
    }
    return units;
}
