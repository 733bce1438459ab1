// Repainting a picture that did not change, at the device pixel ratio of QT_SCALE_FACTOR.

#include "application.h"
#include "benchmark.h"
#include "pixmapdisplay.h"

#include <QPaintEvent>
#include <QPainter>

#include <array>
#include <string>

namespace {

/// Shows a pixmap that has the device pixels it needs.
class Blit : public QWidget
{
public:
    QPixmap ready;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter(this).drawPixmap(
            QPoint((width() - int(ready.width() / ready.devicePixelRatio())) / 2,
                   (height() - int(ready.height() / ready.devicePixelRatio())) / 2),
            ready);
    }
};

} // namespace

int main()
{
    const Application application;
    constexpr QSize shownSize(400, 300);
    QImage image(3840, 2160, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x / 16, y / 9, (x * y) % 251));
    const QPixmap picture = QPixmap::fromImage(image);

    struct Case
    {
        std::string subject;
        int turn;
        QSize seen;
    };
    const qreal ratio = application.app->devicePixelRatio();
    const std::string at = " picture at " + std::to_string(int(ratio)) + "x";
    std::array<Case, 2> cases{{{"repaint of a plain" + at, 0, QSize(400, 225)},
                               {"repaint of a turned" + at, 3, QSize(225, 300)}}};
    std::array<PixmapDisplay, 2> displays;
    std::array<Blit, 2> blits;
    for (size_t i = 0; i < cases.size(); ++i) {
        PixmapDisplay &display = displays[i];
        display.setPreviewOri(cases[i].turn);
        display.setPixmap(picture);
        Blit &blit = blits[i];
        blit.ready = picture.scaled(cases[i].seen * ratio).copy();
        blit.ready.setDevicePixelRatio(ratio);
        for (QWidget *const widget :
             {static_cast<QWidget *>(&display), static_cast<QWidget *>(&blit)}) {
            widget->resize(shownSize);
            widget->show();
        }
        QCoreApplication::processEvents();
        Bench::time(
            cases[i].subject.c_str(), "1.5", [&display] { display.repaint(); },
            [&blit] { blit.repaint(); });
    }
    return Bench::run();
}
