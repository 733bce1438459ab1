#include "pixmaputils.h"
#include "testmain.h"

#include <QFile>
#include <QTemporaryDir>

class TestPixmapUtils : public Test
{
    Q_OBJECT

private:
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(dir.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) >= 0 ? file.fileName() : "";
    }

    QTemporaryDir dir;

private Q_SLOTS:
    void rendersSvg()
    {
        const QString path =
            write("half.SVG", "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'>"
                              "<rect width='5' height='10' fill='#00ff00'/></svg>");
        const QImage image = loadPixmapAutoFormat(path, QSize(40, 20), false).toImage();
        QCOMPARE(image.size(), QSize(40, 20));
        QCOMPARE(image.pixelColor(10, 10), QColor(Qt::green));
        QCOMPARE(image.pixelColor(30, 10), QColor(Qt::transparent));
        QVERIFY(loadSvgAsPixmap(path, QSize()).isNull());
    }

    void missingFileIsTriedAgain()
    {
        const QString path = dir.filePath("later.png");
        QTest::ignoreMessage(QtDebugMsg, qPrintable("can not read file :  \"" + path + '"'));
        QVERIFY(loadPixmapAutoFormat(path, QSize(9, 9), false).isNull());
        QVERIFY(QImage(40, 20, QImage::Format_RGB32).save(path));
        QCOMPARE(loadPixmapAutoFormat(path, QSize(0, 0), false).size(), QSize(40, 20));
    }

    void picksColor()
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
};

TEST_MAIN(TestPixmapUtils)
#include "tst_pixmaputils.moc"
