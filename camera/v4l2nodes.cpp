#include "v4l2nodes.h"

#include <QFile>
#include <QFileInfo>
#include <linux/videodev2.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

/// `link` is a link in sysfs to the node's folder.
static VideoNode readNode(const QString &link)
{
    VideoNode node;
    QString folder = QFileInfo(link).canonicalFilePath();
    node.path = "/dev/" + QFileInfo(folder).fileName();
    QString interface;
    while (folder.size() > 1 && !QFileInfo::exists(folder + "/idVendor")) {
        interface = QFileInfo(folder).fileName();
        folder = QFileInfo(folder).path();
    }
    if (folder.size() <= 1)
        return node;

    const auto attribute = [&folder](const char *fileName) {
        QFile file(folder + '/' + fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray serial = attribute("serial");
    const QString place = interface.section(':', 1);
    node.camera = place.toUtf8() + '\n' + attribute("idVendor") + attribute("idProduct") + serial;
    node.port = QFileInfo(folder).fileName().toUtf8();
    node.plugging = node.port + '\n' + attribute("devnum");
    node.hasSerial = !serial.trimmed().isEmpty();
    // A node gives access only to the units of its own interface.
    const auto units = extensionUnits(attribute("descriptors"));
    for (const UnitDescriptor &unit : units) {
        if (place == QString("%1.%2").arg(unit.configuration).arg(unit.interface))
            node.units << unit;
    }
    return node;
}

VideoNode videoNode(dev_t number)
{
    return readNode(QString("/sys/dev/char/%1:%2").arg(major(number)).arg(minor(number)));
}

QVector<VideoNode> videoNodes()
{
    constexpr int maximumNodes = 256; // the kernel's limit
    QVector<VideoNode> found;
    for (int number = 0; number < maximumNodes; ++number) {
        const QString link = "/sys/class/video4linux/video" + QString::number(number);
        if (QFileInfo::exists(link))
            found << readNode(link);
    }
    return found;
}

int openVideoNode(const QString &path, v4l2_capability *capability, dev_t *number)
{
    constexpr unsigned videoMajor = 81;
    const QByteArray name = QFile::encodeName(path);
    // Opening something else can block or have side effects.
    struct stat named = {};
    if (::stat(name.constData(), &named) != 0)
        return -1;
    if (!S_ISCHR(named.st_mode) || major(named.st_rdev) != videoMajor) {
        errno = ENOTTY;
        return -1;
    }
    const int descriptor = ::open(name.constData(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return -1;
    if (::ioctl(descriptor, VIDIOC_QUERYCAP, capability) != 0) {
        const int error = errno;
        ::close(descriptor);
        errno = error;
        return -1;
    }
    // The name may have passed to another device meanwhile. umockdev does not mock fstat().
    struct stat opened = {};
    if (number)
        *number = ::fstat(descriptor, &opened) == 0 && S_ISCHR(opened.st_mode) ? opened.st_rdev
                                                                               : named.st_rdev;
    return descriptor;
}
