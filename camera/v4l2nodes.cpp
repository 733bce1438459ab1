#include "v4l2nodes.h"

#include <QFile>
#include <QFileInfo>
#include <linux/videodev2.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

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

    const auto attribute = [&folder](const char *fileName) {
        QFile file(folder + '/' + fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    node.camera = interface.toUtf8() + '\n' + attribute("idVendor") + attribute("idProduct") +
                  attribute("serial");
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
    constexpr int maximumNodes = 256; // the kernel's limit
    QVector<VideoNode> found;
    for (int number = 0; number < maximumNodes; ++number) {
        const QString name = "video" + QString::number(number);
        if (QFileInfo::exists("/sys/class/video4linux/" + name))
            found << videoNode("/dev/" + name);
    }
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
