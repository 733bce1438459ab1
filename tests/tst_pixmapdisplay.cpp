#include "pixmapdisplay.h"
#include "support.h"

#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#include <atomic>
#include <memory>
#include <thread>

#ifdef __SANITIZE_THREAD__
#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

// Qt itself is not instrumented: only this tells the sanitizer that QMutex orders what it guards.
static void callQt(const char *name, QMutex *mutex)
{
    reinterpret_cast<void (*)(QMutex *)>(dlsym(RTLD_NEXT, name))(mutex);
}

void QMutex::lock() noexcept
{
    callQt("_ZN6QMutex4lockEv", this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept
{
    __tsan_release(this);
    callQt("_ZN6QMutex6unlockEv", this);
}
#endif

namespace {

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

    QImage ground(qreal ratio) const
    {
        QImage image(size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(QColor(200, 120, 40));
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
        painter.translate(width() / 2, height() / 2);
        painter.rotate(angle);
        painter.translate(-(width() / 2), -(height() / 2));
        QPainterPath corners;
        corners.addRoundedRect(rect(), corner, corner);
        painter.setClipPath(corners, corner > 0 ? Qt::ReplaceClip : Qt::NoClip);
        painter.drawPixmap(QRectF(place), picture, QRectF(picture.rect()));
        painter.fillRect(rect(), over);
        return image;
    }

    QPixmap picture;
    int angle = 0;
    int corner = 0;
    QColor over = Qt::transparent;
};

} // namespace

class TestPixmapDisplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsPicture();
    void changesShowAtOnce();
    void showsNoPicture();
    void animates();
    void picturesFromThreads();
};

// Twice each: the second time from what was kept.
void TestPixmapDisplay::showsPicture()
{
    const QSize wide(192, 108);
    const QSize tall(90, 200);
    // Picture, scale mode, forward; and the place.
    const std::tuple<QSize, int, bool, QRect> rows[] = {
        {wide, 0, true, {0, 0, 400, 300}},   {wide, 1, true, {0, 37, 400, 225}},
        {wide, 2, true, {-66, 0, 533, 300}}, {wide, 2, false, {50, 66, 300, 168}},
        {tall, 1, true, {132, 0, 135, 300}}, {tall, 1, false, {110, -50, 180, 400}}};
    const int angles[] = {0, 270, 180, 90, 0};
    for (int i = 0; i < 12; ++i) {
        const auto &[size, type, forward, place] = rows[i / 2];
        Display display(noise(size, i % 2 == 1));
        display.setScaleType(PixmapDisplay::ScaleType(type));
        display.setPreviewForward(forward);
        display.setStyleSheet("background-color: rgba(0, 0, 255, 100)");
        display.over = QColor(0, 0, 255, 100);
        for (int j = 0; j < 30; ++j) {
            const qreal ratio = 1 + j % 3 * 0.5;
            display.setRoundCorder(display.corner = j % 2 * 40);
            display.setPreviewOri(j / 6);
            display.angle = angles[j / 6];
            const QImage wanted = display.painted(place, ratio);
            for (int time = 0; time < 2; ++time)
                QVERIFY2(display.shown(ratio) == wanted, qPrintable(QString::number(100 * i + j)));
        }
    }
}

void TestPixmapDisplay::changesShowAtOnce()
{
    Display display;
    QCOMPARE(display.shown(), display.painted({0, 37, 400, 225}));
    // Shown by whoever is told of it: nothing is emitted under the lock.
    QImage seen;
    connect(&display, &PixmapDisplay::updatePic, this, [&] { seen = display.shown(); });
    display.set(noise({192, 108}, false, 2));
    QCOMPARE(seen, display.painted({0, 37, 400, 225}));
    display.setScaleType(PixmapDisplay::ScaleStretch);
    QCOMPARE(display.shown(), seen); // only a resize lays it out anew
    display.updateDrawRect();
    QCOMPARE(display.shown(), display.painted({0, 0, 400, 300}));
    QCOMPARE(display.shown(2), display.painted({0, 0, 400, 300}, 2));
    display.resize(200, 150);
    QCOMPARE(display.shown(), display.painted({0, 0, 200, 150}));
    display.setScaleType(PixmapDisplay::ScaleFill);
    display.set(noise({960, 540}));
    QCOMPARE(display.shown(), display.painted({-33, 0, 266, 150}));
    display.setScaleType(PixmapDisplay::ScaleFit);
    display.set(noise({20, 10}));
    QCOMPARE(display.shown(), display.painted({0, 25, 200, 100}));
    display.setPreviewOri(3);
    display.angle = 90;
    QCOMPARE(display.shown(), display.painted({0, 25, 200, 100}));
    display.resize(200, 151); // one more row is seen
    QCOMPARE(display.shown(), display.painted({0, 25, 200, 100}));
}

void TestPixmapDisplay::showsNoPicture()
{
    Display display{QPixmap()};
    display.setBackground(QColor(0, 80, 160, 100));
    QImage wanted = display.ground(1);
    QPainter painter(&wanted);
    painter.fillRect(display.rect(), QColor(0, 80, 160, 100));
    QVERIFY(display.shown() != wanted); // there is a word on it
    display.hideLoading();
    painter.fillRect(display.rect(), QColor(0, 0, 0, 1));
    QCOMPARE(display.shown(), wanted);
}

void TestPixmapDisplay::animates()
{
    const QRect target(20, 30, 160, 90);
    auto display = std::make_unique<Display>();
    const QImage moved = display->painted(target);
    display->setPreviewOri(3);
    display->setRoundCorder(40);
    const QImage resting = display->shown();
    bool done = false;
    display->startAnimation(target, nullptr, 0);
    display->startAnimation(
        target, [&] { done = true; }, 30);
    QTRY_VERIFY(done);
    QCOMPARE(display->shown(), resting);
    int dropped = 0;
    int ended = 0;
    const auto drop = [&] {
        ++dropped;
    };
    const auto end = [&] {
        ++ended;
        QCOMPARE(display->shown(), moved);
        display->startAnimation({0, 37, 400, 225}, drop, 100000); // stays, so brings no frame
    };
    display->startAnimation(target, drop, 1);
    display->startAnimation(target, end, 30);
    QTRY_COMPARE(ended, 1);
    QCOMPARE(display->shown(), moved);
    for (const int duration : {0, 30}) {
        display = std::make_unique<Display>(); // the one before goes in mid-animation
        display->startAnimation(
            target, [&] { display.reset(); }, duration);
        QTRY_VERIFY(!display);
    }
    QCOMPARE(dropped, 0);
}

void TestPixmapDisplay::picturesFromThreads()
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

TEST_MAIN(TestPixmapDisplay)
#include "tst_pixmapdisplay.moc"
