#include "v4l2nodes.h"

#include "errornames.h"
#include "trackingprotocol.h"

#include <QDir>
#include <QFileInfo>
#include <linux/videodev2.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

bool UsbIdentity::operator==(const UsbIdentity &other) const
{
    return interface == other.interface && vendor == other.vendor && product == other.product &&
           serial == other.serial;
}

static QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

VideoNode videoNode(const QString &path)
{
    VideoNode node;
    node.path = path;
    const QString name = QFileInfo(QFileInfo(path).canonicalFilePath()).fileName();
    QString folder =
        QFileInfo(QStringLiteral("/sys/class/video4linux/%1/device").arg(name)).canonicalFilePath();
    QString interface;
    while (folder.size() > 1 && !QFileInfo::exists(folder + QStringLiteral("/idVendor"))) {
        interface = QFileInfo(folder).fileName();
        folder = QFileInfo(folder).path();
    }
    if (folder.size() <= 1)
        return node;

    const auto attribute = [&folder](const char *file) {
        return contents(folder + QLatin1Char('/') + QLatin1String(file));
    };
    const auto text = [&attribute](const char *file) {
        return QString::fromUtf8(attribute(file)).trimmed();
    };
    node.usb = {interface, text("idVendor"), text("idProduct"), text("serial")};
    // The driver serves a node the units of its own interface alone.
    const QString place = interface.section(QLatin1Char(':'), 1);
    const auto units = extensionUnits(attribute("descriptors"));
    for (const UnitDescriptor &unit : units) {
        if (place == QStringLiteral("%1.%2").arg(unit.configuration).arg(unit.interface))
            node.units << unit;
    }
    return node;
}

QVector<VideoNode> videoNodes()
{
    const QString prefix = QStringLiteral("video");
    QVector<int> numbers;
    const QDir nodes(QStringLiteral("/sys/class/video4linux"));
    const auto names = nodes.entryList({prefix + QLatin1Char('*')}, QDir::Dirs);
    for (const QString &name : names)
        numbers << name.midRef(prefix.size()).toInt();
    std::sort(numbers.begin(), numbers.end());
    QVector<VideoNode> found;
    for (const int number : qAsConst(numbers))
        found << videoNode(QStringLiteral("/dev/") + prefix + QString::number(number));
    return found;
}

int openVideoNode(const QString &path, v4l2_capability *capability)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0 || ::ioctl(descriptor, VIDIOC_QUERYCAP, capability) == 0)
        return descriptor;
    const int error = errno;
    ::close(descriptor);
    errno = error;
    return -1;
}

bool isCaptureNode(const v4l2_capability &capability)
{
    return capability.device_caps & V4L2_CAP_VIDEO_CAPTURE;
}

/// A name that a device gave: what could move a terminal's cursor is replaced.
template <size_t size>
static QString printable(const __u8 (&bytes)[size])
{
    const auto *const text = reinterpret_cast<const char *>(bytes);
    QString name = QString::fromUtf8(text, int(qstrnlen(text, size)));
    std::replace_if(
        name.begin(), name.end(), [](QChar letter) { return !letter.isPrint(); }, QLatin1Char('?'));
    return name;
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
            text += transferError(QStringLiteral("Opening %1").arg(node.path), error);
            text += QLatin1Char('\n');
            continue;
        }
        ::close(descriptor);
        if (!isCaptureNode(capability))
            continue;
        text += QStringLiteral("%1: %2, driver %3, bus %4\n")
                    .arg(node.path, printable(capability.card), printable(capability.driver),
                         printable(capability.bus_info));
        if (node.units.isEmpty())
            text += QStringLiteral("    no extension unit\n");
        for (const UnitDescriptor &unit : node.units) {
            const bool takesCommands = unit.has(TrackingProtocol::commandSelector);
            const bool hasStatus = unit.has(TrackingProtocol::statusSelector);
            text += QStringLiteral("    unit %1 %2, %3\n")
                        .arg(QString::number(unit.number), unit.guid.toString(),
                             takesCommands && hasStatus ? QStringLiteral("controls 7 and 8")
                             : takesCommands            ? QStringLiteral("control 7, not 8")
                             : hasStatus                ? QStringLiteral("control 8, not 7")
                                         : QStringLiteral("neither control 7 nor 8"));
        }
    }
    return text.isEmpty() ? QStringLiteral("No camera was found.\n") : text;
}
