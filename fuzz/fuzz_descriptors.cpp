#include "usbdescriptors.h"

#undef NDEBUG // assertions in every build
#include <cassert>

static bool operator==(const UnitDescriptor &one, const UnitDescriptor &other)
{
    return one.configuration == other.configuration && one.interface == other.interface &&
           one.number == other.number && one.guid == other.guid && one.controls == other.controls;
}

/// A unit's number and GUID as they appear in its descriptor.
static QByteArray numberAndGuid(const UnitDescriptor &unit)
{
    const QByteArray guid = unit.guid.toRfc4122(); // its first three fields are big-endian
    QByteArray bytes(1, char(unit.number));
    for (const int index : {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15})
        bytes += guid[index];
    return bytes;
}

/// Parses the bytes as a camera's USB descriptors.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    // Not a copy: QByteArray would append a zero, which the parser could read without being
    // noticed.
    const auto input = QByteArray::fromRawData(reinterpret_cast<const char *>(bytes), int(size));
    const QVector<UnitDescriptor> units = extensionUnits(input);
    int place = 0;
    for (const UnitDescriptor &unit : units) {
        assert(unit.number >= 1 && unit.number <= 255 && unit.controls.size() <= 255 - 23);
        assert(!unit.has(0) && !unit.has(8 * unit.controls.size() + 1));
        // The input contains the units in this order.
        const QByteArray name = QByteArray("\x24\x06") + numberAndGuid(unit);
        place = input.indexOf(name, place) + name.size();
        assert(place >= name.size());
        assert(input.indexOf(char(unit.controls.size()) + unit.controls, place + 2) > place);

        // A minimal set of descriptors for this unit yields the same unit.
        QByteArray minimal = QByteArray("\x09\x02\0\0\0", 5) + char(unit.configuration) +
                             QByteArray("\0\0\0\x09\x04", 5) + char(unit.interface) +
                             QByteArray("\0\0\x0e\1\0\0", 6);
        minimal += char(23 + unit.controls.size()) + name + QByteArray("\0\0", 2) +
                   char(unit.controls.size()) + unit.controls;
        assert(extensionUnits(minimal) == QVector<UnitDescriptor>{unit});
    }
    // Truncated input yields the same units, except the last ones.
    for (int length = 0; length < input.size(); ++length) {
        const QVector<UnitDescriptor> some =
            extensionUnits(QByteArray::fromRawData(input.constData(), length));
        assert(some == units.mid(0, some.size()));
    }
    return 0;
}
