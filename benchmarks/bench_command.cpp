// What a command and a status read cost on their way through the host's channel.

#include "application.h"
#include "benchmark.h"
#include "controltrackingplugin.h"

#include <algorithm>

extern "C" void *__libc_malloc(size_t size);

namespace {
int allocations = 0;
}

extern "C" void *malloc(size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

namespace {

int allocationsOf(const Bench::Step &step)
{
    step();
    allocations = 0;
    step();
    return allocations;
}

} // namespace

int main()
{
    const Application application;
    ControlTrackingPlugin panel;
    QVariant answer = QVariant::fromValue(ExtensionUnit());
    panel.commandChannel = [&answer](int /*request*/, const QVariant & /*record*/) {
        return answer;
    };
    const auto &channel = panel.commandChannel;
    quint8 payload[60] = {};
    M24_Extension type{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x10}, 1, payload, nullptr};

    const Bench::Step command = [&] {
        panel.sendCommand(type, 1);
    };
    const Bench::Step commandByHand = [&] {
        ExtensionUnit unit;
        unit.write = true;
        unit.selector = 7;
        unit.length = 60;
        static constexpr quint8 bytes[] = {0xFF, 0x53, 0x05, 0x10, 1, 1};
        std::copy(std::begin(bytes), std::end(bytes), unit.data);
        channel(ChannelRequest::Extension, QVariant::fromValue(unit));
    };
    Bench::instructions("one command", "1.15", command, commandByHand);
    Bench::time("one command", "", command, commandByHand);
    Bench::figure("one command", "heap allocations", "1", allocationsOf(command),
                  allocationsOf(commandByHand));

    quint8 tracking = 0;
    const Bench::Step read = [&] {
        tracking = panel.readStatus(type).data[1];
    };
    const Bench::Step readByHand = [&] {
        ExtensionUnit unit;
        unit.selector = 8;
        const QVariant reply = channel(ChannelRequest::Extension, QVariant::fromValue(unit));
        tracking = qvariant_cast<ExtensionUnit>(reply).data[1];
    };
    Bench::instructions("one status read", "1.15", read, readByHand);
    Bench::time("one status read", "", read, readByHand);
    return Bench::run();
}
