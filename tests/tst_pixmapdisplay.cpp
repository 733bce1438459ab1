#include "pixmapdisplay.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QThread>

#include <atomic>
#include <memory>
#include <thread>

namespace {

using namespace std::chrono_literals;

QPixmap noise(QSize size, bool translucent = false, quint32 seed = 1)
{
    QImage image(size, translucent ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    for (int i = 0; i < size.width() * size.height(); ++i) {
        seed = seed * 1664525U + 1013904223U;
        image.setPixel(i % size.width(), i / size.width(),
                       translucent ? qPremultiply(seed) : seed | 0xff000000U);
    }
    return QPixmap::fromImage(image);
}

/// A display that can also paint what it is to show: its picture, turned by `angle`, at a place.
struct Display : PixmapDisplay
{
    explicit Display(const QPixmap &first = noise({192, 108}))
    {
        resize(400, 300);
        set(first);
    }

    void set(const QPixmap &next) { setPixmap(picture = next); }

    void turn(int orientation)
    {
        setPreviewOri(orientation);
        angle = orientation > 0 && orientation < 4 ? 360 - 90 * orientation : 0;
    }

    QImage ground(qreal ratio = 1) const
    {
        QImage image(size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(below);
        return image;
    }

    QImage shown(qreal ratio = 1)
    {
        QImage image = ground(ratio);
        render(&image, QPoint(), QRegion(), DrawChildren);
        return image;
    }

    QImage painted(const QRect &place, qreal ratio = 1) const
    {
        QImage image = ground(ratio);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        const QPoint middle(width() / 2, height() / 2);
        painter.translate(middle);
        painter.rotate(angle);
        painter.translate(-middle);
        QPainterPath corners;
        corners.addRoundedRect(rect(), corner, corner);
        painter.setClipPath(corners, corner > 0 ? Qt::ReplaceClip : Qt::NoClip);
        painter.drawPixmap(QRectF(place), picture, QRectF(picture.rect()));
        painter.fillRect(rect(), over);
        return image;
    }

    QPixmap picture;
    int angle = 0, corner = 0;
    QColor below{200, 120, 40};
    QColor over = Qt::transparent;
};

} // namespace

class TestPixmapDisplay : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void showsPicture_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<int>("scaleType"); // to be turned: -1
        QTest::addColumn<QRect>("place");
        QTest::newRow("stretch") << QSize(192, 108) << 0 << QRect(0, 0, 400, 300);
        QTest::newRow("fit, wide") << QSize(192, 108) << 1 << QRect(0, 37, 400, 225);
        QTest::newRow("fill, wide") << QSize(192, 108) << 2 << QRect(-66, 0, 533, 300);
        QTest::newRow("to be turned, wide") << QSize(192, 108) << -1 << QRect(50, 66, 300, 168);
        QTest::newRow("fit, tall") << QSize(90, 200) << 1 << QRect(132, 0, 135, 300);
        QTest::newRow("to be turned, tall") << QSize(90, 200) << -1 << QRect(110, -50, 180, 400);
    }

    void showsPicture()
    {
        QFETCH(QSize, picture);
        QFETCH(int, scaleType);
        QFETCH(QRect, place);
        for (int i = 0; i < 60; ++i) {
            const bool translucent = i % 2 != 0;
            Display display(noise(picture, translucent));
            display.setScaleType(PixmapDisplay::ScaleType(qAbs(scaleType)));
            display.setPreviewForward(scaleType >= 0);
            display.setStyleSheet("background-color: rgba(0, 0, 255, 100)");
            display.over = QColor(0, 0, 255, 100);
            display.setRoundCorder(display.corner = i / 2 % 2 * 40);
            display.turn(i / 4 % 5);
            const int halves = 2 + i / 20;
            const qreal ratio = halves * 0.5;
            const QImage wanted = display.painted(place, ratio);
            const auto what = QString("translucent %1, ratio %2, corner %3, angle %4")
                                  .arg(translucent)
                                  .arg(ratio)
                                  .arg(display.corner)
                                  .arg(display.angle);
            QVERIFY2(display.shown(ratio) == wanted, qPrintable(what));
            QVERIFY2(display.shown(ratio) == wanted, qPrintable(what + ", kept"));
        }
    }

    void changesShowAtOnce()
    {
        Display display;
        const auto shows = [&display](const QRect &place, qreal ratio = 1) {
            return display.shown(ratio) == display.painted(place, ratio);
        };
        QVERIFY(shows({0, 37, 400, 225}));
        // Shown by whoever is told of it in the same thread.
        QImage seen;
        connect(&display, &PixmapDisplay::updatePic, this, [&] { seen = display.shown(); });
        display.set(noise({192, 108}, false, 2));
        QCOMPARE(seen, display.painted({0, 37, 400, 225}));
        display.setScaleType(PixmapDisplay::ScaleStretch);
        QCOMPARE(display.shown(), seen); // only a resize lays it out anew
        display.updateDrawRect();
        QVERIFY(shows({0, 0, 400, 300}));
        QVERIFY(shows({0, 0, 400, 300}, 2));
        display.setScaleType(PixmapDisplay::ScaleFill);
        display.resize(200, 150);
        QVERIFY(shows({-33, 0, 266, 150}));
        display.setScaleType(PixmapDisplay::ScaleFit);
        display.set(noise({20, 10}));
        QVERIFY(shows({0, 25, 200, 100}));
        display.turn(3);
        QVERIFY(shows({0, 25, 200, 100}));
        display.resize(200, 151); // one more row is seen
        QVERIFY(shows({0, 25, 200, 100}));
    }

    void showsNoPicture()
    {
        Display display{QPixmap()};
        display.setBackground(QColor(0, 80, 160));
        QImage wanted = display.ground();
        wanted.fill(QColor(0, 80, 160));
        QVERIFY(display.shown() != wanted); // there is a word on it
        display.hideLoading();
        QPainter(&wanted).fillRect(display.rect(), QColor(0, 0, 0, 1));
        QCOMPARE(display.shown(), wanted);
    }

    void picturesFromThreads()
    {
        const QPixmap pictures[] = {noise({192, 108}), noise({90, 200}), QPixmap()};
        Display display;
        display.show();
        QVERIFY(QTest::qWaitForWindowExposed(&display));
        std::atomic<bool> stop(false);
        std::thread workers[3];
        for (std::thread &worker : workers) {
            worker = std::thread([&] {
                for (int i = 0; !stop; ++i)
                    display.setPixmap(pictures[i % 3]);
            });
        }
        for (int i = 100; i >= 0; --i) {
            display.resize(400 - i, 300 - i);
            display.repaint();
        }
        stop = true;
        for (std::thread &worker : workers)
            worker.join();
        QCoreApplication::processEvents();
        std::thread([&] { display.setPixmap(pictures[0]); }).join();
        QScreen *screen = QGuiApplication::primaryScreen();
        QTRY_COMPARE(screen->grabWindow(display.winId()).toImage(), display.grab().toImage());
    }

    // A display that the GUI thread deletes while a worker tells of a picture.
    void endsDuringEmission()
    {
        auto display = std::make_unique<PixmapDisplay>();
        std::atomic<bool> emitting(false);
        std::atomic<bool> emitted(false);
        // Without a context: called in the worker.
        connect(display.get(), &PixmapDisplay::updatePic, [&] {
            emitting = true;
            QThread::msleep(100); // as long as the end would take if it did not wait
            emitted = true;
        });
        std::thread worker([ending = display.get()] { ending->setPixmap(QPixmap()); });
        while (!emitting)
            std::this_thread::yield();
        display.reset();
        const bool waited = emitted;
        worker.join();
        QVERIFY(waited);
    }

    // Last: its clock rules from then on.
    void animates()
    {
        VirtualTime::start();
        const QRect target(20, 30, 160, 90);
        auto display = std::make_unique<Display>();
        const QImage moved = display->painted(target);
        display->setPreviewOri(3);
        display->setRoundCorder(40);
        const QImage resting = display->shown();
        QString called;
        const auto call = [&called] {
            called += 'c';
        };
        display->startAnimation(target, nullptr, 0);
        display->startAnimation(target, call, 1);
        const auto end = [&] {
            called += display->shown() == moved ? 'm' : '?';
            display->startAnimation({0, 37, 400, 225}, call, 30); // stays, so brings no frame
        };
        display->startAnimation(target, end, 30);
        VirtualTime::advance(50ms);
        QCOMPARE(called, "m");
        QCOMPARE(display->shown(), moved);
        VirtualTime::advance(50ms);
        QCOMPARE(called, "mc");
        QCOMPARE(display->shown(), resting);
        for (const int duration : {0, 30}) {
            display->startAnimation(target, call, 100);
            display = std::make_unique<Display>(); // the one before goes in mid-animation
            display->startAnimation(
                target, [&] { display.reset(); }, duration);
            VirtualTime::advance(50ms);
            QVERIFY(!display);
            display = std::make_unique<Display>();
        }
        VirtualTime::advance(150ms);
        QCOMPARE(called, "mc");
    }
};

TEST_MAIN(TestPixmapDisplay)
#include "tst_pixmapdisplay.moc"
