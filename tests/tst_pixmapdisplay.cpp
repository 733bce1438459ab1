#include "pixmapdisplay.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QPainter>
#include <QPainterPath>
#include <QPointer>
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

QImage background()
{
    QImage image(400, 300, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(200, 120, 40));
    return image;
}

QImage shown(QWidget &display)
{
    QImage image = background();
    display.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

QImage painted(const QPixmap &picture, const QRect &place, int angle = 0, int corner = 0)
{
    QImage image = background();
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(200, 150);
    painter.rotate(angle);
    painter.translate(-200, -150);
    QPainterPath corners;
    corners.addRoundedRect(image.rect(), corner, corner);
    painter.setClipPath(corners, corner > 0 ? Qt::ReplaceClip : Qt::NoClip);
    painter.drawPixmap(QRectF(place), picture, QRectF(picture.rect()));
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
            {tall, 0, {0, 0, 400, 300}, 0, 0, 0},     {wide, 1, {0, 37, 400, 225}, 1, 270, 40},
            {tall, 1, {132, 0, 135, 300}, 2, 180, 0}, {wide, 2, {-66, 0, 533, 300}, 4, 0, 1},
            {tall, 2, {0, -294, 400, 888}, 0, 0, -1}, {wide, -1, {50, 66, 300, 168}, 3, 90, 40},
        };
        for (const auto &row : rows) {
            Display display;
            display.setPixmap(noise(row.size));
            display.setScaleType(PixmapDisplay::ScaleType(qAbs(row.scaleType)));
            display.setPreviewForward(row.scaleType >= 0);
            display.setPreviewOri(row.orientation);
            display.setRoundCorder(row.corner);
            const QImage wanted = painted(noise(row.size), row.place, row.angle, row.corner);
            QVERIFY2(shown(display) == wanted, qPrintable(QString("at x = %1").arg(row.place.x())));
            display.setStyleSheet("background: blue"); // above the picture
            QCOMPARE(shown(display).pixelColor(200, 150), QColor(Qt::blue));
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
        display.setBackground(QColor(0, 80, 160));
        const QImage loading = shown(display);
        QCOMPARE(loading.pixelColor(0, 0), QColor(0, 80, 160));
        QVERIFY(loading.copy(170, 140, 60, 20) != loading.copy(0, 0, 60, 20)); // says "Loading"
        display.hideLoading();
        QImage blank = loading;
        blank.fill(QColor(0, 80, 159)); // a little darker
        QCOMPARE(shown(display), blank);
        // The first picture repaints the display.
        display.show();
        QVERIFY(QTest::qWaitForWindowExposed(&display));
        QCoreApplication::processEvents();
        display.setPixmap(noise({192, 108}));
        QScreen *screen = QGuiApplication::primaryScreen();
        QTRY_COMPARE(screen->grabWindow(display.winId()).toImage(), display.grab().toImage());
    }

    // A worker sets pictures while the display is resized and painted. Then the display is deleted
    // while the worker emits updatePic().
    void pictureFromThread()
    {
        auto display = std::make_unique<Display>();
        std::atomic<bool> ending(false);
        std::atomic<bool> emitting(false);
        std::atomic<bool> emitted(false);
        // Without a context, so called in the worker.
        connect(display.get(), &PixmapDisplay::updatePic, [&] {
            if (!ending)
                return;
            emitting = true;
            QThread::msleep(100); // time for a destructor that does not wait
            emitted = true;
        });
        std::thread worker([&, target = display.get()] {
            while (!emitted)
                target->setPixmap(QPixmap(20, 10));
        });
        display->show();
        for (int i = 100; i >= 0; --i) {
            display->resize(400, 300 - i);
            display->repaint();
        }
        ending = true;
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
        Display display;
        display.setPixmap(picture);
        display.setPreviewOri(3);
        display.setRoundCorder(40);
        const QImage resting = shown(display);
        const QImage moved = painted(picture, target);
        QString called;
        const auto call = [&called] {
            called += 'c';
        };
        display.startAnimation(target, nullptr, 0);
        display.startAnimation(target, call, 1); // replaced, so not called
        const auto end = [&] {
            QCOMPARE(shown(display), moved);
            display.startAnimation({0, 37, 400, 225}, call, 30); // does not move
        };
        display.startAnimation(target, end, 30);
        VirtualTime::advance(50ms);
        QCOMPARE(shown(display), moved);
        VirtualTime::advance(50ms);
        QCOMPARE(called, "c");
        QCOMPARE(shown(display), resting);
        for (const int duration : {0, 30}) {
            QPointer<Display> deleted(new Display);
            deleted->startAnimation(
                target, [&deleted] { delete deleted; }, duration);
            VirtualTime::advance(50ms);
            QVERIFY(!deleted);
        }
    }
};

TEST_MAIN(TestPixmapDisplay)
#include "tst_pixmapdisplay.moc"
