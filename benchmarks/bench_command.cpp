// Google Benchmark registers benchmarks as global objects.
// clazy:excludeall=non-pod-global-static

#include "controltrackingplugin.h"

#include <algorithm>
#include <benchmark/benchmark.h>

namespace {

struct Panel : ControlTrackingPlugin
{
    Panel()
    {
        commandChannel = [](int /*request*/, const QVariant & /*record*/) {
            static const QVariant answer = QVariant::fromValue(ExtensionUnit());
            return answer;
        };
    }
};

void command(benchmark::State &state)
{
    Panel panel;
    quint8 payload[60] = {};
    M24_Extension type{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x10}, 1, payload, nullptr};
    for ([[maybe_unused]] auto iteration : state)
        panel.sendCommand(type, 1);
    state.SetLabel("1.25");
}
BENCHMARK(command)->Name("one command/ours");

/// Fills the record by hand.
void commandFloor(benchmark::State &state)
{
    const Panel panel;
    for ([[maybe_unused]] auto iteration : state) {
        ExtensionUnit unit;
        unit.write = true;
        unit.selector = 7;
        unit.length = 60;
        static constexpr quint8 bytes[] = {0xFF, 0x53, 0x05, 0x10, 1, 1};
        std::copy(std::begin(bytes), std::end(bytes), unit.data);
        panel.commandChannel(ChannelRequest::Extension, QVariant::fromValue(unit));
    }
}
BENCHMARK(commandFloor)->Name("one command/floor");

} // namespace
