// Google Benchmark registers benchmarks as global objects.
// clazy:excludeall=non-pod-global-static

#include "hostedpanel.h"
#include "steppeddriver.h"

#include <QTimer>

#include <benchmark/benchmark.h>

namespace {

/// Remembers whether a widget was painted.
class PaintWatcher : public QObject
{
public:
    explicit PaintWatcher(QWidget *widget) { widget->installEventFilter(this); }
    bool painted = false;

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
};

void showUntilPainted(PanelWindow &host, QWidget *watched)
{
    PaintWatcher watcher(watched);
    host.window.show();
    while (!watcher.painted)
        QCoreApplication::processEvents();
}

/// Inserts a panel whose camera reports tracking with composition.
ControlTrackingPlugin *insertPanel(PanelWindow &host)
{
    auto *const panel = new ControlTrackingPlugin;
    panel->commandChannel = [](int request, const QVariant & /*record*/) -> QVariant {
        if (request != ChannelRequest::Extension)
            return 1;
        ExtensionUnit reply;
        reply.length = 60;
        reply.data[1] = reply.data[3] = reply.data[4] = 1;
        return QVariant::fromValue(reply);
    };
    panel->insertWidget(host.container);
    return panel;
}

/// Runs the event loop until only timers are left.
void processAll()
{
    for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
}

void insert(benchmark::State &state)
{
    for ([[maybe_unused]] auto iteration : state) {
        PanelWindow host;
        showUntilPainted(host, PanelInternals::ui(*insertPanel(host)).label_title);
    }
    state.SetLabel("1.25");
}
// Few repetitions per process, because each panel's catalog stays installed.
BENCHMARK(insert)->Name("insertWidget to the first frame/ours")->Iterations(1)->Repetitions(5);

/// Inserts the form with the same visible rows, but without the code behind it.
void insertFloor(benchmark::State &state)
{
    for ([[maybe_unused]] auto iteration : state) {
        Ui_root form;
        PanelWindow host;
        auto *const widget = new QWidget;
        form.setupUi(widget);
        form.frame_limit_title->hide();
        form.frame_limit_setting_spliter->hide();
        host.container->layout()->addWidget(widget);
        showUntilPainted(host, form.label_title);
    }
}
BENCHMARK(insertFloor)
    ->Name("insertWidget to the first frame/floor")
    ->Iterations(1)
    ->Repetitions(5);

struct ShownPanel : PanelWindow
{
    ShownPanel()
    {
        window.show();
        SteppedDriver().run(100); // until the switches show the camera's state
        processAll();
    }
    ControlTrackingPlugin *panel = insertPanel(*this);
};

void poll(benchmark::State &state)
{
    const ShownPanel host;
    for ([[maybe_unused]] auto iteration : state) {
        PanelInternals::poll(*host.panel);
        processAll();
    }
    state.SetLabel("1.15");
}
BENCHMARK(poll)->Name("one poll without changes/ours");

/// Freezes and thaws the window once, the least work for a new layout without flicker.
void pollFloor(benchmark::State &state)
{
    ShownPanel host;
    for ([[maybe_unused]] auto iteration : state) {
        host.window.setUpdatesEnabled(false);
        host.container->layout()->invalidate();
        QTimer::singleShot(0, &host.window, [&host] {
            host.window.layout()->activate();
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            host.window.setUpdatesEnabled(true);
            host.window.repaint();
        });
        processAll();
    }
}
BENCHMARK(pollFloor)->Name("one poll without changes/floor");

} // namespace
