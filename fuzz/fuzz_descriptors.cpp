#include "fuzzing.h"
#include "usbdescriptors.h"

static bool operator==(const UnitDescriptor &one, const UnitDescriptor &other)
{
    return one.configuration == other.configuration && one.interface == other.interface &&
           one.number == other.number && one.guid == other.guid && one.controls == other.controls;
}

/// What a unit's descriptor says from its number to the GUID.
static QByteArray nameOf(const UnitDescriptor &unit)
{
    const QByteArray guid = unit.guid.toRfc4122(); // its first three fields are big-endian
    QByteArray name(1, char(unit.number));
    for (const int byte : {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15})
        name += guid[byte];
    return name;
}

/// A camera's USB descriptors.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    // Not a copy: behind its end there would be a zero that may be read.
    const auto input = QByteArray::fromRawData(reinterpret_cast<const char *>(bytes), int(size));
    const QVector<UnitDescriptor> units = extensionUnits(input);
    int place = 0;
    for (const UnitDescriptor &unit : units) {
        REQUIRE(unit.number >= 1 && unit.number <= 255 && unit.controls.size() <= 255 - 23);
        REQUIRE(!unit.has(0) && !unit.has(8 * unit.controls.size() + 1));
        // They stand one behind the other.
        const QByteArray name = QByteArray("\x24\x06") + nameOf(unit);
        place = input.indexOf(name, place) + name.size();
        REQUIRE(place >= name.size());
        REQUIRE(input.indexOf(char(unit.controls.size()) + unit.controls, place + 2) > place);

        // Written anew, with nothing else, it is read the same.
        QByteArray anew = QByteArray("\x09\x02\0\0\0", 5) + char(unit.configuration) +
                          QByteArray("\0\0\0\x09\x04", 5) + char(unit.interface) +
                          QByteArray("\0\0\x0e\1\0\0", 6);
        anew += char(23 + unit.controls.size()) + name + QByteArray("\0\0", 2) +
                char(unit.controls.size()) + unit.controls;
        REQUIRE(extensionUnits(anew) == QVector<UnitDescriptor>{unit});
    }
    // However much of it is missing, what there is is read the same.
    for (int length = 0; length < input.size(); ++length) {
        const QVector<UnitDescriptor> some =
            extensionUnits(QByteArray::fromRawData(input.constData(), length));
        REQUIRE(some == units.mid(0, some.size()));
    }
    return 0;
}
