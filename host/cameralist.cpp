#include "cameralist.h"

#include "errortexts.h"
#include "trackingprotocol.h"
#include "v4l2nodes.h"

#include <linux/videodev2.h>

#include <algorithm>
#include <cerrno>
#include <unistd.h>

/// A name that a device reports. Replaces characters that could control the terminal.
template <size_t size>
static QString printable(const __u8 (&bytes)[size])
{
    const auto *const text = reinterpret_cast<const char *>(bytes);
    QString name = QString::fromUtf8(text, int(qstrnlen(text, size)));
    std::replace_if(
        name.begin(), name.end(), [](QChar letter) { return !letter.isPrint(); }, QChar('?'));
    return name;
}

static QString controls(const UnitDescriptor &unit)
{
    const bool takesCommands = unit.has(TrackingProtocol::commandSelector);
    const bool hasStatus = unit.has(TrackingProtocol::statusSelector);
    if (takesCommands)
        return hasStatus ? "controls 7 and 8" : "control 7, not 8";
    return hasStatus ? "control 8, not 7" : "neither control 7 nor 8";
}

QString listCameras()
{
    QString text;
    const auto nodes = videoNodes();
    for (const VideoNode &node : nodes) {
        v4l2_capability capability = {};
        const int descriptor = openVideoNode(node.path, &capability);
        if (descriptor < 0) {
            const int error = errno;
            text += openingError(node.path, error) + '\n';
            continue;
        }
        ::close(descriptor);
        if (!(capability.device_caps & V4L2_CAP_VIDEO_CAPTURE))
            continue;
        text += QString("%1: %2, driver %3, bus %4\n")
                    .arg(node.path, printable(capability.card), printable(capability.driver),
                         printable(capability.bus_info));
        if (node.units.isEmpty())
            text += "    no extension unit\n";
        for (const UnitDescriptor &unit : node.units) {
            text += QString("    unit %1 %2, %3\n")
                        .arg(QString::number(unit.number), unit.guid.toString(), controls(unit));
        }
    }
    return text.isEmpty() ? "No camera was found.\n" : text;
}
