// A switch that slides, against a bare animation of a child over a painted parent.

#include "application.h"
#include "benchmark.h"
#include "steppeddriver.h"
#include "switchbutton.h"

#include <QPainter>
#include <QPropertyAnimation>

namespace {

constexpr QSize switchSize(40, 20);
constexpr int switches = 50;

class Knob : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawEllipse(rect());
    }
};

class Track : public QWidget
{
public:
    explicit Track(QWidget *parent)
        : QWidget(parent)
    {
        knob->setGeometry(2, 2, 16, 16);
    }

    void slide()
    {
        on = !on;
        auto *const animation = new QPropertyAnimation(knob, "geometry");
        animation->setDuration(100);
        animation->setStartValue(knob->geometry());
        animation->setEndValue(QRect(on ? 22 : 2, 2, 16, 16));
        connect(animation, &QPropertyAnimation::valueChanged, this, qOverload<>(&QWidget::update));
        animation->start(QAbstractAnimation::DeleteWhenStopped);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(on ? Qt::red : Qt::gray);
        painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
    }

private:
    bool on = false;
    Knob *knob = new Knob(this);
};

// A window with as many of a kind as asked.
template <typename Kind>
QVector<Kind *> fill(QWidget &window, int count)
{
    window.resize(600, 300);
    QVector<Kind *> kinds;
    for (int i = 0; i < count; ++i) {
        auto *const kind = new Kind(&window);
        kind->setGeometry(QRect(QPoint(10 + i % 10 * 50, 10 + i / 10 * 30), switchSize));
        kinds << kind;
    }
    window.show();
    return kinds;
}

} // namespace

int main()
{
    const Application application;
    SteppedDriver frames;
    QWidget windows[4];
    const auto one = fill<SwitchButton>(windows[0], 1);
    const auto oneTrack = fill<Track>(windows[1], 1);
    const auto many = fill<SwitchButton>(windows[2], switches);
    const auto manyTracks = fill<Track>(windows[3], switches);

    const auto slide = [&frames](const auto &kinds) {
        for (auto *const kind : kinds) {
            if constexpr (std::is_same_v<decltype(kind), SwitchButton *const>)
                kind->SetStatus(!kind->GetStatus(), false);
            else
                kind->slide();
        }
        frames.run(100);
    };
    frames.run(100); // what the first layouts start
    const Bench::Step slideOne = [&] {
        slide(one);
    };
    const Bench::Step slideTrack = [&] {
        slide(oneTrack);
    };
    const Bench::Step slideMany = [&] {
        slide(many);
    };
    const Bench::Step slideTracks = [&] {
        slide(manyTracks);
    };
    Bench::instructions("one slide", "1.2", slideOne, slideTrack);
    Bench::time("one slide", "1.2", slideOne, slideTrack);
    Bench::instructions("50 slides at once", "1.2", slideMany, slideTracks);
    Bench::time("50 slides at once", "1.2", slideMany, slideTracks);
    Bench::figure("a slide, of 50 against alone", "ns", "1.2",
                  Bench::bestOf(20, slideMany) / switches, Bench::bestOf(20, slideOne));
    return Bench::run();
}
