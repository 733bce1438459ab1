#include "pixmaputils.h"
#include "support.h"

#include <QBuffer>
#include <QCursor>
#include <QFile>
#include <QPixmapCache>
#include <QTemporaryDir>
#include <QWidget>

class TestPixmapUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rendersSvg();
    void loads_data();
    void loads();
    void remembersFirstSize();
    void missingFileIsTriedAgain();
    void picksColor();

private:
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(dir.filePath(name));
        const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        return written ? file.fileName() : QString();
    }

    static QByteArray encoded(QSize size, const char *format = "PNG")
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        QBuffer buffer;
        image.save(&buffer, format);
        return buffer.data();
    }

    QTemporaryDir dir;
};

void TestPixmapUtils::rendersSvg()
{
    const QString path =
        write("half.SVG", "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'>"
                          "<rect width='5' height='10' fill='#00ff00'/></svg>");
    const QImage image = loadPixmapAutoFormat(path, QSize(40, 20), false).toImage();
    QCOMPARE(image.size(), QSize(40, 20));
    QCOMPARE(image.pixelColor(10, 10), QColor(Qt::green));
    QCOMPARE(image.pixelColor(30, 10), QColor(Qt::transparent));
    QVERIFY(loadSvgAsPixmap(path, QSize()).isNull());

    const QString broken = write("broken.svg", "<svg");
    for (const QString &name : {broken, dir.filePath("missing.svg")}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(name));
        const QImage blank = loadPixmapAutoFormat(name, QSize(6, 4), true).toImage();
        QCOMPARE(blank.size(), QSize(6, 4));
        QCOMPARE(blank.pixelColor(3, 2), QColor(Qt::transparent));
        QVERIFY(QPixmapCache::find(name, nullptr));
    }
}

void TestPixmapUtils::loads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("asked");
    QTest::addColumn<QSize>("got");
    const QByteArray png = encoded({40, 20});
    const QByteArray jpeg = encoded({40, 20}, "JPG");
    QTest::newRow("as it is") << png << QSize(0, 0) << QSize(40, 20);
    QTest::newRow("covers the size") << png << QSize(10, 10) << QSize(20, 10);
    QTest::newRow("one side is zero") << png << QSize(0, 10) << QSize(0, 0);
    QTest::newRow("jpeg named png") << jpeg << QSize(80, 9) << QSize(80, 40);
    QTest::newRow("empty") << QByteArray() << QSize(5, 5) << QSize(0, 0);
    QTest::newRow("truncated") << png.left(30) << QSize(5, 5) << QSize(0, 0);
}

void TestPixmapUtils::loads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, asked);
    QPixmapCache::clear();
    const QString path = write("a.PNG", bytes);
    const QPixmap pixmap = loadPixmapAutoFormat(path, asked, false);
    QTEST(pixmap.size(), "got");
    QVERIFY(pixmap.isNull() || pixmap.toImage().pixelColor(1, 1).red() > 250);
    QVERIFY(QPixmapCache::find(path, nullptr));
}

void TestPixmapUtils::remembersFirstSize()
{
    const QString path = write("b.png", encoded({40, 20}));
    const QPixmap first = loadPixmapAutoFormat(path, QSize(20, 10), false);
    write("b.png", encoded({60, 60}));
    QCOMPARE(loadPixmapAutoFormat(path, QSize(80, 40), true).cacheKey(), first.cacheKey());
    removePixmapCache(path);
    QCOMPARE(loadPixmapAutoFormat(path, QSize(0, 0), false).size(), QSize(60, 60));
}

void TestPixmapUtils::missingFileIsTriedAgain()
{
    const QString path = dir.filePath("later.png");
    const QString message = QStringLiteral("can not read file :  \"%1\"").arg(path);
    QTest::ignoreMessage(QtDebugMsg, qPrintable(message));
    QVERIFY(loadPixmapAutoFormat(path, QSize(9, 9), false).isNull());
    write("later.png", encoded({40, 20}));
    QCOMPARE(loadPixmapAutoFormat(path, QSize(0, 0), false).size(), QSize(40, 20));
}

void TestPixmapUtils::picksColor()
{
    QWidget window(nullptr, Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
    window.setStyleSheet("background: rgb(12, 34, 56)");
    window.setGeometry(100, 100, 50, 50);
    window.show();
    int rgb[] = {-1, -1, -1};
    QCursor::setPos(120, 120);
    QTRY_VERIFY(pickScreenColor(rgb) && rgb[0] == 12 && rgb[1] == 34 && rgb[2] == 56);
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        QCursor::setPos(20, 20); // this platform has pixels only where a window is
        QVERIFY(!pickScreenColor(rgb));
        QCOMPARE(rgb[0], 12);
    }
}

TEST_MAIN(TestPixmapUtils)
#include "tst_pixmaputils.moc"
