#include "pixmaputils.h"

#include <QApplication>
#include <QCursor>
#include <QDebug>
#include <QDesktopWidget>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QScreen>
#include <QSvgRenderer>

QPixmap loadSvgAsPixmap(const QString &path, const QSize &size)
{
    QPixmap pixmap(size);
    if (pixmap.isNull())
        return pixmap;
    QSvgRenderer renderer(path);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();
    return pixmap;
}

QPixmap loadPixmapAutoFormat(const QString &path, QSize size, bool /*unused*/)
{
    QPixmap pixmap;
    if (QPixmapCache::find(path, &pixmap))
        return pixmap;

    if (path.endsWith(QLatin1String("svg"), Qt::CaseInsensitive)) {
        pixmap = loadSvgAsPixmap(path, size);
    } else {
        if (!pixmap.load(path)) {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly)) {
                qDebug() << "can not read file : " << path;
                return {};
            }
            // Decode the bytes only, in case a wrong extension misled Qt.
            pixmap.loadFromData(file.readAll());
        }
        if (size != QSize(0, 0) && !pixmap.isNull())
            pixmap = pixmap.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::FastTransformation);
    }
    QPixmapCache::insert(path, pixmap);
    return pixmap;
}

void removePixmapCache(const QString &key)
{
    QPixmapCache::remove(key);
}

bool pickScreenColor(int *rgb)
{
    const QPoint position = QCursor::pos();
    QScreen *screen = QGuiApplication::screenAt(position);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return false;

    const QPixmap grab =
        screen->grabWindow(QApplication::desktop()->winId(), position.x(), position.y(), 2, 2);
    const QImage image = grab.toImage();
    if (!image.valid(0, 0))
        return false;
    const QColor color = image.pixelColor(0, 0);
    rgb[0] = color.red();
    rgb[1] = color.green();
    rgb[2] = color.blue();
    return true;
}
