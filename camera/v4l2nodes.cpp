#include "v4l2nodes.h"

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
    QString folder = QFileInfo("/sys/class/video4linux/" + name + "/device").canonicalFilePath();
    QString interface;
    while (folder.size() > 1 && !QFileInfo::exists(folder + "/idVendor")) {
        interface = QFileInfo(folder).fileName();
        folder = QFileInfo(folder).path();
    }
    if (folder.size() <= 1)
        return node;

    const auto attribute = [&folder](const char *file) {
        return contents(folder + '/' + file);
    };
    const auto text = [&attribute](const char *file) {
        return QString::fromUtf8(attribute(file)).trimmed();
    };
    node.usb = {interface, text("idVendor"), text("idProduct"), text("serial")};
    // A node gives access only to the units of its own interface.
    const QString place = interface.section(':', 1);
    const auto units = extensionUnits(attribute("descriptors"));
    for (const UnitDescriptor &unit : units) {
        if (place == QString("%1.%2").arg(unit.configuration).arg(unit.interface))
            node.units << unit;
    }
    return node;
}

QVector<VideoNode> videoNodes()
{
    const QString prefix("video");
    QVector<int> numbers;
    const QDir nodes("/sys/class/video4linux");
    const auto names = nodes.entryList({prefix + "*"}, QDir::Dirs);
    for (const QString &name : names)
        numbers << name.midRef(prefix.size()).toInt();
    std::sort(numbers.begin(), numbers.end());
    QVector<VideoNode> found;
    for (const int number : qAsConst(numbers))
        found << videoNode("/dev/" + prefix + QString::number(number));
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
