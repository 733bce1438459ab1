// Google Benchmark registers benchmarks as global objects.
// clazy:excludeall=non-pod-global-static

#include "steppeddriver.h"
#include "switchbutton.h"

#include <QPainter>
#include <QPropertyAnimation>

#include <benchmark/benchmark.h>

namespace {

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

/// The least that looks like a switch: an animated child above a painted parent.
class Track : public QWidget
{
public:
    explicit Track(QWidget *parent)
        : QWidget(parent)
    {
        knob->setGeometry(2, 2, 16, 16);
    }

    void SetStatus(bool status, bool /*forceSignal*/)
    {
        on = status;
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

/// Slides a SwitchButton or a Track from one end to the other and paints all frames.
template <typename Switch>
void slide(benchmark::State &state)
{
    SteppedDriver frames;
    QWidget window;
    window.resize(600, 300);
    Switch button(&window);
    button.setGeometry(QRect(10, 10, 40, 20));
    window.show();
    frames.run(100); // the first layout starts a slide, too
    bool on = false;
    for ([[maybe_unused]] auto iteration : state) {
        on = !on;
        button.SetStatus(on, false);
        frames.run(100);
    }
    state.SetLabel("1.2");
}
BENCHMARK_TEMPLATE(slide, SwitchButton)->Name("one slide/ours");
BENCHMARK_TEMPLATE(slide, Track)->Name("one slide/floor");

} // namespace
