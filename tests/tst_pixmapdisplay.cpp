#include "pixmapdisplay.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <memory>
#include <random>
#include <thread>

namespace {

using namespace std::chrono_literals;

/// A translucent picture of unrelated pixels.
QPixmap noise(QSize size, unsigned seed = 1)
{
    QImage image(size, QImage::Format_ARGB32);
    std::generate_n(reinterpret_cast<QRgb *>(image.bits()), size.width() * size.height(),
                    std::mt19937(seed));
    return QPixmap::fromImage(image);
}

/// Of 400 x 300, on a screen with a fractional device pixel ratio.
QImage background()
{
    QImage image(600, 450, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1.5);
    image.fill(QColor(200, 120, 40));
    return image;
}

QImage painted(const QPixmap &picture, const QRect &place, int angle = 0, int corner = 0,
               const QColor &over = Qt::transparent)
{
    const QRect widget(0, 0, 400, 300);
    QImage image = background();
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(200, 150);
    painter.rotate(angle);
    painter.translate(-200, -150);
    QPainterPath corners;
    corners.addRoundedRect(widget, corner, corner);
    painter.setClipPath(corners, corner > 0 ? Qt::ReplaceClip : Qt::NoClip);
    painter.drawPixmap(QRectF(place), picture, QRectF(picture.rect()));
    painter.fillRect(widget, over);
    return image;
}

QImage shown(QWidget &display)
{
    QImage image = background();
    display.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

struct Display : PixmapDisplay
{
    Display() { resize(400, 300); }
};

} // namespace

class TestPixmapDisplay : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void laysOut()
    {
        const QSize wide(192, 108);
        const QSize tall(90, 200);
        const struct
        {
            QSize size;
            int scaleType; // -1: setPreviewForward(false)
            QRect place;
            int orientation, angle, corner;
        } rows[] = {
            {wide, 0, {0, 0, 400, 300}, 0, 0, 0},      {tall, 3, {0, 0, 400, 300}, 4, 0, 40},
            {wide, 1, {0, 37, 400, 225}, 1, 270, 40},  {tall, 1, {132, 0, 135, 300}, 2, 180, 0},
            {wide, 2, {-66, 0, 533, 300}, 2, 180, 1},  {tall, 2, {0, -294, 400, 888}, 0, 0, -1},
            {wide, -1, {50, 66, 300, 168}, 3, 90, 40}, {tall, -1, {110, -50, 180, 400}, 1, 270, 0},
        };
        for (const auto &row : rows) {
            Display display;
            display.setPixmap(noise(row.size));
            display.setScaleType(PixmapDisplay::ScaleType(qAbs(row.scaleType)));
            display.setPreviewForward(row.scaleType >= 0);
            display.setPreviewOri(row.orientation);
            display.setRoundCorder(row.corner);
            display.setStyleSheet("background: rgba(0, 0, 255, 100)"); // above the picture
            const QImage wanted =
                painted(noise(row.size), row.place, row.angle, row.corner, QColor(0, 0, 255, 100));
            QVERIFY2(shown(display) == wanted, QTest::toString(row.place));
        }
    }

    void laysOutAgainWhenResizedOrForAnotherSize()
    {
        Display display;
        display.setPixmap(noise({192, 108}));
        // A receiver in the same thread may paint.
        QImage seen;
        connect(&display, &PixmapDisplay::updatePic, this, [&] { seen = shown(display); });
        const QPixmap second = noise({192, 108}, 2);
        display.setPixmap(second);
        QCOMPARE(seen, painted(second, {0, 37, 400, 225}));
        display.setScaleType(PixmapDisplay::ScaleStretch);
        QCOMPARE(shown(display), seen);
        display.resize(400, 0); // keeps the layout
        display.resize(200, 300);
        QCOMPARE(shown(display), painted(second, {0, 0, 200, 300}));
        display.setPixSize(20, 10, PixmapDisplay::ScaleFit);
        display.setPixmap(noise({20, 10}));
        QCOMPARE(shown(display), painted(noise({20, 10}), {0, 0, 200, 300}));
        display.setPixmap(noise({10, 10}));
        QCOMPARE(shown(display), painted(noise({10, 10}), {0, 50, 200, 200}));
    }

    void showsNoPicture()
    {
        Display display;
        display.setPixmap(QPixmap());
        display.setBackground(QColor(0, 80, 160, 200));
        QImage wanted = background();
        QPainter(&wanted).fillRect(display.rect(), QColor(0, 80, 160, 200));
        QImage withText = wanted;
        QPainter writer(&withText);
        writer.setPen(Qt::gray);
        writer.drawText(display.rect(), Qt::AlignCenter, "Loading");
        QCOMPARE(shown(display), withText);
        display.hideLoading();
        QPainter(&wanted).fillRect(display.rect(), QColor(0, 0, 0, 1));
        QCOMPARE(shown(display), wanted);
    }

    void picturesFromThreads()
    {
        Display display;
        display.show();
        std::atomic<bool> stop(false);
        const auto work = [&] {
            while (!stop)
                display.setPixmap(QPixmap(20, 10));
        };
        std::thread one(work);
        std::thread other(work);
        for (int i = 100; i >= 0; --i) {
            display.resize(400, 300 - i);
            display.repaint();
        }
        stop = true;
        one.join();
        other.join();
        QCoreApplication::processEvents();
        std::thread([&] { display.setPixmap(noise({192, 108})); }).join();
        QScreen *screen = QGuiApplication::primaryScreen();
        QTRY_COMPARE(screen->grabWindow(display.winId()).toImage(), display.grab().toImage());
    }

    // The GUI thread deletes the display while a worker emits updatePic().
    void endsDuringEmission()
    {
        auto display = std::make_unique<PixmapDisplay>();
        std::atomic<bool> emitting(false);
        std::atomic<bool> emitted(false);
        // Without a context, so called in the worker.
        connect(display.get(), &PixmapDisplay::updatePic, [&] {
            emitting = true;
            QThread::msleep(100); // time for a destructor that does not wait
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

    // Keep this last: it replaces the clock.
    void animates()
    {
        VirtualTime::start();
        const QRect target(20, 30, 160, 90);
        const QPixmap picture = noise({192, 108});
        auto display = std::make_unique<Display>();
        display->setPixmap(picture);
        display->setPreviewOri(3);
        display->setRoundCorder(40);
        const QImage resting = shown(*display);
        const QImage moved = painted(picture, target);
        QString called;
        const auto call = [&called] {
            called += 'c';
        };
        display->startAnimation(target, nullptr, 0);
        display->startAnimation(target, call, 1); // replaced, so not called
        const auto end = [&] {
            called += shown(*display) == moved ? 'm' : '?';
            display->startAnimation({0, 37, 400, 225}, call, 30); // does not move
        };
        display->startAnimation(target, end, 30);
        VirtualTime::advance(50ms);
        QCOMPARE(called, "m");
        QCOMPARE(shown(*display), moved);
        VirtualTime::advance(50ms);
        QCOMPARE(called, "mc");
        QCOMPARE(shown(*display), resting);
        for (const int duration : {0, 30}) {
            display->startAnimation(target, call, 100);
            display = std::make_unique<Display>(); // deletes the previous one in mid-animation
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
