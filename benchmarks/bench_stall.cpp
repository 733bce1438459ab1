#include "commandchannel.h"
#include "hostedpanel.h"
#include "simulatedcamera.h"
#include "stallmeter.h"
#include "transferqueue.h"

#include <QAbstractButton>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <iterator>
#include <string>

namespace {

using namespace std::chrono_literals;
using Channel = std::function<QVariant(int, QVariant)>;

constexpr auto session = 1s;
// Shorter than the intervals of a panel's polls and a user's clicks.
constexpr auto pollInterval = 100ms;
constexpr auto clickInterval = 70ms;

/// Measures the longest time between two turns of the event loop while a user works with a panel.
void measure(benchmark::State &state, const Channel &channel)
{
    PanelWindow host;
    auto *const panel = new ControlTrackingPlugin;
    panel->commandChannel = channel;
    panel->insertWidget(host.container);
    host.window.show();
    QCoreApplication::processEvents();

    QTimer clicks;
    int click = 0;
    QObject::connect(&clicks, &QTimer::timeout, panel, [&] {
        static constexpr const char *names[] = {"rb_hand", "rb_sport", "rb_whiteboard",
                                                "rb_normal_mode", "rb_normal"};
        const char *const name = names[click++ % std::size(names)];
        panel->findChild<QAbstractButton *>(QString::fromLatin1(name))->click();
    });
    QTimer polls;
    QObject::connect(&polls, &QTimer::timeout, panel, [&] {
        ExtensionUnit read;
        read.selector = TrackingProtocol::statusSelector;
        channel(ChannelRequest::Extension, QVariant::fromValue(read));
    });
    const StallMeter stalls;
    clicks.start(clickInterval);
    polls.start(pollInterval);
    QTimer::singleShot(session, panel, &QCoreApplication::quit);
    QCoreApplication::exec();
    for ([[maybe_unused]] auto iteration : state)
        state.SetIterationTime(std::chrono::duration<double>(stalls.longest()).count());
}

/// The reference host's queue and a camera that needs `delay` ms for a transfer.
void stall(benchmark::State &state, int delay)
{
    const auto camera = std::make_shared<SimulatedCamera>();
    Faults faults = noFaults;
    faults[Fault::Delay] = delay;
    camera->setFaults(faults);
    TransferQueue queue(camera);
    CommandChannel channel(queue);
    measure(state, [&](int kind, const QVariant &record) { return channel.request(kind, record); });
}

/// A channel that answers at once.
void stallFloor(benchmark::State &state)
{
    measure(state, [](int /*kind*/, const QVariant & /*record*/) {
        ExtensionUnit reply;
        reply.length = TrackingProtocol::blockLength;
        reply.data[TrackingProtocol::Tracking] = 1;
        return QVariant::fromValue(reply);
    });
}

const bool registered = [] {
    for (const int delay : {0, 100, 5000}) {
        const std::string name = "longest stall at " + std::to_string(delay) + " ms a transfer/";
        for (auto *const side :
             {benchmark::RegisterBenchmark((name + "ours").c_str(), stall, delay),
              benchmark::RegisterBenchmark((name + "floor").c_str(), stallFloor)})
            side->UseManualTime()->Iterations(1)->Repetitions(1);
    }
    return true;
}();

} // namespace
