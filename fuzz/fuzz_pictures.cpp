#include "fuzzing.h"
#include "pixmaputils.h"

#include <QFile>
#include <QImageReader>
#include <QPixmapCache>
#include <QTemporaryDir>

namespace {

/// Whether a picture, or what it is scaled to, is beyond what the cache takes.
bool isTooLarge(QSize picture, QSize asked)
{
    const QSize scaled = picture.scaled(asked, Qt::KeepAspectRatioByExpanding).expandedTo(picture);
    return scaled.width() > 1000 || scaled.height() > 1000;
}

} // namespace

/// The bytes of a file, under one of several names, and the size that is asked for.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    needApplication(Warnings::AreIgnored); // the decoders'
    QPixmapCache::clear(); // Qt itself takes a file of the same name, size and second for the same
    static const QTemporaryDir folder;
    static constexpr const char *names[] = {"a.svg", "A.SVG", "a.png", "a.jpg",
                                            "a.gif", "a.xpm", "a.ico", "a"};
    Input input(bytes, size);
    const QString path = folder.filePath(names[input.take() % std::size(names)]);
    const int width = input.take();
    const QSize asked(width, input.take());
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly) && file.write(input.left) == input.left.size());
    file.close();
    REQUIRE(file.open(QIODevice::ReadOnly));
    const QImageReader byContent(&file);
    if (isTooLarge(QImageReader(path).size(), asked) || isTooLarge(byContent.size(), asked))
        return -1;
    file.close();

    const QPixmap pixmap = loadPixmapAutoFormat(path, asked, false);
    const QSize got = pixmap.size();
    if (path.endsWith("svg", Qt::CaseInsensitive)) {
        REQUIRE(got == (asked.isEmpty() ? QSize(0, 0) : asked));
    } else if (asked.isNull() || !asked.isEmpty()) {
        QImage image;
        if (image.loadFromData(input.left)) {
            const QSize covering = image.size().scaled(asked, Qt::KeepAspectRatioByExpanding);
            REQUIRE(got == (asked.isNull() ? image.size() : covering.expandedTo({1, 1})));
        }
    } else {
        REQUIRE(pixmap.isNull());
    }

    // Remembered for whatever size, and although the file is another by now.
    REQUIRE(file.open(QIODevice::WriteOnly));
    file.close();
    REQUIRE(loadPixmapAutoFormat(path, {7, 7}, true).cacheKey() == pixmap.cacheKey());
    removePixmapCache(path);
    QPixmap cached;
    REQUIRE(!QPixmapCache::find(path, &cached));
    return 0;
}
