#include "pixmapdisplay.h"
#include "support.h"

#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QSignalSpy>

#include <algorithm>
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

struct Scene
{
    QPixmap picture = noise({192, 108});
    QRect place{0, 37, 400, 225};
    int angle = 0;
    int corner = 0;
    QColor over = Qt::transparent;
    QSize size{400, 300};
};

QImage ground(QSize size, qreal ratio)
{
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(QColor(200, 120, 40));
    return image;
}

QImage painted(const Scene &scene, qreal ratio = 1)
{
    QImage image = ground(scene.size, ratio);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QPoint centre(scene.size.width() / 2, scene.size.height() / 2);
    painter.translate(centre);
    painter.rotate(scene.angle);
    painter.translate(-centre);
    const QRect all(QPoint(), scene.size);
    QPainterPath corners;
    corners.addRoundedRect(all, scene.corner, scene.corner);
    painter.setClipPath(corners, scene.corner > 0 ? Qt::ReplaceClip : Qt::NoClip);
    painter.drawPixmap(QRectF(scene.place), scene.picture, QRectF(scene.picture.rect()));
    painter.fillRect(all, scene.over);
    return image;
}

struct Display : PixmapDisplay
{
    explicit Display(const QPixmap &picture = noise({192, 108}))
    {
        resize(400, 300);
        setPixmap(picture);
    }

    QImage shown(qreal ratio = 1)
    {
        QImage image = ground(size(), ratio);
        render(&image, QPoint(), QRegion(), DrawChildren);
        return image;
    }
};

} // namespace

class TestPixmapDisplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsPicture_data();
    void showsPicture();
    void changesShowAtOnce();
    void showsNoPicture();
    void nothingRunsUnderTheLock();
    void dropsQuickPresses();
    void animates_data();
    void animates();
    void picturesFromThreads();
};

void TestPixmapDisplay::showsPicture_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("forward");
    QTest::addColumn<QRect>("place");
    const QSize wide(192, 108);
    const QSize tall(90, 200);
    QTest::newRow("wide, stretch") << wide << 0 << true << QRect(0, 0, 400, 300);
    QTest::newRow("wide, fit") << wide << 1 << true << QRect(0, 37, 400, 225);
    QTest::newRow("wide, fill") << wide << 2 << true << QRect(-66, 0, 533, 300);
    QTest::newRow("wide, turned") << wide << 2 << false << QRect(50, 66, 300, 168);
    QTest::newRow("tall, fit") << tall << 1 << true << QRect(132, 0, 135, 300);
    QTest::newRow("tall, turned") << tall << 1 << false << QRect(110, -50, 180, 400);
}

void TestPixmapDisplay::showsPicture()
{
    QFETCH(QSize, picture);
    QFETCH(int, type);
    QFETCH(bool, forward);
    QFETCH(QRect, place);
    const int angles[] = {0, 270, 180, 90, 0};
    for (const bool translucent : {false, true}) {
        Scene scene{noise(picture, translucent), place, 0, 0, QColor(0, 0, 255, 100)};
        Display display(scene.picture);
        display.setScaleType(PixmapDisplay::ScaleType(type));
        display.setPreviewForward(forward);
        display.setStyleSheet(QStringLiteral("background-color: rgba(0, 0, 255, 100)"));
        for (const qreal ratio : {1.0, 1.5, 2.0}) {
            for (scene.corner = 0; scene.corner <= 40; scene.corner += 40) {
                display.setRoundCorder(scene.corner);
                for (int ori = 0; ori < 5; ++ori) {
                    scene.angle = angles[ori];
                    display.setPreviewOri(ori);
                    const QImage wanted = painted(scene, ratio);
                    QCOMPARE(display.shown(ratio), wanted);
                    QCOMPARE(display.shown(ratio), wanted);
                }
            }
        }
    }
}

void TestPixmapDisplay::changesShowAtOnce()
{
    Display display;
    Scene scene;
    QCOMPARE(display.shown(), painted(scene));
    display.setPixmap(scene.picture = noise({192, 108}, false, 2));
    QCOMPARE(display.shown(), painted(scene));

    display.setScaleType(PixmapDisplay::ScaleStretch);
    QCOMPARE(display.shown(), painted(scene)); // only a resize lays it out anew
    display.updateDrawRect();
    scene.place = QRect(0, 0, 400, 300);
    QCOMPARE(display.shown(), painted(scene));
    QCOMPARE(display.shown(2), painted(scene, 2));
    display.resize(scene.size = QSize(200, 150));
    scene.place = QRect(0, 0, 200, 150);
    QCOMPARE(display.shown(), painted(scene));
    display.setScaleType(PixmapDisplay::ScaleFill);
    display.setPixmap(scene.picture = noise({960, 540}));
    scene.place = QRect(-33, 0, 266, 150);
    QCOMPARE(display.shown(), painted(scene));
    display.setScaleType(PixmapDisplay::ScaleFit);
    display.setPixmap(scene.picture = noise({20, 10}));
    scene.place = QRect(0, 25, 200, 100);
    QCOMPARE(display.shown(), painted(scene));
    display.setPreviewOri(3);
    scene.angle = 90;
    QCOMPARE(display.shown(), painted(scene));
    display.resize(scene.size = QSize(200, 151)); // the same place, and one more row is seen
    QCOMPARE(display.shown(), painted(scene));
}

void TestPixmapDisplay::showsNoPicture()
{
    Display display{QPixmap()};
    display.setBackground(QColor(0, 80, 160, 100));
    QImage wanted = ground(display.size(), 1);
    QPainter(&wanted).fillRect(display.rect(), QColor(0, 80, 160, 100));
    QImage loading = wanted;
    {
        QPainter painter(&loading);
        painter.setFont(display.font());
        painter.setPen(Qt::gray);
        painter.drawText(display.rect(), Qt::AlignCenter, QStringLiteral("Loading"));
    }
    QCOMPARE(display.shown(), loading);
    display.hideLoading();
    QPainter(&wanted).fillRect(display.rect(), QColor(0, 0, 0, 1));
    QCOMPARE(display.shown(), wanted);
}

void TestPixmapDisplay::nothingRunsUnderTheLock()
{
    Display display;
    QImage seen;
    connect(&display, &PixmapDisplay::updatePic, this, [&] { seen = display.shown(); });
    const QPixmap next = noise({192, 108}, false, 2);
    display.setPixmap(next);
    QCOMPARE(seen, painted({next}));
}

void TestPixmapDisplay::dropsQuickPresses()
{
    auto *display = new Display;
    QSignalSpy clicks(display, &PixmapDisplay::onClick);
    QTest::mousePress(display, Qt::RightButton);
    QCOMPARE(clicks.count(), 0);
    // Each press, also a dropped one, holds the next ones back.
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 300;)
        QTest::mousePress(display, Qt::LeftButton);
    QCOMPARE(clicks.count(), 1);
    QTest::qWait(220); // the interval itself is what is tested
    connect(display, &PixmapDisplay::onClick, this, [display] { delete display; });
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(display, &press);
    QCOMPARE(clicks.count(), 2);
}

void TestPixmapDisplay::animates_data()
{
    QTest::addColumn<int>("duration");
    QTest::newRow("at once") << 0;
    QTest::newRow("some frames") << 30;
}

void TestPixmapDisplay::animates()
{
    QFETCH(int, duration);
    auto display = std::make_unique<Display>();
    display->setPreviewOri(3);
    display->setRoundCorder(40);
    const QRect target(20, 30, 160, 90);
    const QImage resting = display->shown();
    QImage last;
    QByteArray ended;
    display->startAnimation(
        target, [&] { ended += 'a'; }, 1); // dropped by the next one
    const auto second = [&] {
        ended += 'b';
        last = display->shown();
        display->startAnimation(
            target, [&] { ended += 'c'; }, 10000 * duration);
    };
    display->startAnimation(target, second, duration);
    QTRY_COMPARE(ended, QByteArray(duration > 0 ? "b" : "bc"));
    QCOMPARE(last, duration > 0 ? painted({noise({192, 108}), target}) : resting);
    QCOMPARE(display->shown(), duration > 0 ? last : resting);
    display.reset(); // in mid-animation

    display = std::make_unique<Display>();
    display->startAnimation(
        target, [&] { display.reset(); }, duration);
    QTRY_VERIFY(!display);

    display = std::make_unique<Display>();
    display->startAnimation(target, nullptr, 0);
    bool done = false;
    display->startAnimation(
        target, [&] { done = true; }, duration);
    QTRY_VERIFY(done);
    QCOMPARE(display->shown(), painted({}));
}

void TestPixmapDisplay::picturesFromThreads()
{
    const QPixmap pictures[] = {noise({192, 108}), noise({90, 200}), QPixmap()};
    auto display = std::make_unique<Display>();
    display->show();
    QVERIFY(QTest::qWaitForWindowExposed(display.get()));
    std::atomic<bool> stop(false);
    std::thread workers[3];
    for (int first = 0; first < 3; ++first) {
        workers[first] = std::thread([&, first] {
            for (int i = 0; !stop; ++i)
                QMetaObject::invokeMethod(display.get(), "setPixmap", Qt::DirectConnection,
                                          Q_ARG(QPixmap, pictures[(first + i) % 3]));
        });
    }
    for (int i = 100; i >= 0; --i) {
        display->resize(400 - i, 300 - i);
        display->repaint();
    }
    stop = true;
    for (std::thread &worker : workers)
        worker.join();
    QCoreApplication::processEvents();
    std::thread([&] { display->setPixmap(pictures[0]); }).join();
    QScreen *screen = QGuiApplication::primaryScreen();
    QTRY_COMPARE(screen->grabWindow(display->winId()).toImage(), display->grab().toImage());
    display->setPixmap(pictures[1]);
    display.reset();
}

TEST_MAIN(TestPixmapDisplay)
#include "tst_pixmapdisplay.moc"
