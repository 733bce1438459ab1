// Google Benchmark registers benchmarks as global objects.
// clazy:excludeall=non-pod-global-static

#include "pixmapdisplay.h"

#include <QCoreApplication>
#include <QPainter>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <random>

namespace {

/// Draws the picture where a PixmapDisplay draws it, and does nothing else.
class PlainDisplay : public QWidget
{
public:
    void setPixmap(const QPixmap &picture)
    {
        pixmap = picture;
        update();
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.drawPixmap(QRectF(0, 60, 640, 360), pixmap, QRectF(pixmap.rect()));
    }

private:
    QPixmap pixmap;
};

QPixmap noise(unsigned seed)
{
    QImage image(1280, 720, QImage::Format_RGB32);
    std::generate_n(reinterpret_cast<QRgb *>(image.bits()), image.width() * image.height(),
                    std::mt19937(seed));
    return QPixmap::fromImage(image);
}

/// Both sides paint the same pixmaps, so that their place in memory does not matter.
const QPixmap &pictureOf(int frame)
{
    static const QPixmap pictures[] = {noise(1), noise(2)};
    return pictures[frame % 2];
}

/// Shows another picture in every frame.
template <typename Display>
void livePicture(benchmark::State &state)
{
    Display display;
    display.resize(640, 480);
    display.show();
    QCoreApplication::processEvents();
    int frame = 0;
    for ([[maybe_unused]] auto iteration : state) {
        display.setPixmap(pictureOf(++frame));
        QCoreApplication::processEvents();
        // The platform requests paints with some ms of delay; do not wait.
        QEvent request(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&display, &request);
    }
    state.SetLabel("1.1");
}
BENCHMARK_TEMPLATE(livePicture, PixmapDisplay)->Name("a live picture/ours");
BENCHMARK_TEMPLATE(livePicture, PlainDisplay)->Name("a live picture/floor");

} // namespace
