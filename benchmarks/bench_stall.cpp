// How long the window stalls at the most while the user works the panel, behind cameras that take
// their time.

#include "application.h"
#include "benchmark.h"
#include "commandchannel.h"
#include "hostedpanel.h"
#include "simulatedcamera.h"
#include "stallmeter.h"
#include "transferqueue.h"

#include <QAbstractButton>
#include <QTimer>

#include <iterator>
#include <string>
#include <valgrind/valgrind.h>

namespace {

using namespace std::chrono_literals;
using Channel = std::function<QVariant(int, QVariant)>;

constexpr auto session = 3s;
/// Both more often than a panel and a user do it.
constexpr auto pollInterval = 100ms;
constexpr auto clickInterval = 70ms;

/// The longest time in ns between two turns of the event loop, from the first poll after set-up on.
double longestStall(const Channel &channel)
{
    HostWindow host;
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
    return static_cast<double>(stalls.longest().count());
}

double longestStallBehind(int delay)
{
    const auto camera = std::make_shared<SimulatedCamera>();
    Faults faults = noFaults;
    faults[Fault::Delay] = delay;
    camera->setFaults(faults);
    TransferQueue queue(camera);
    CommandChannel channel(queue);
    return longestStall(
        [&](int kind, const QVariant &record) { return channel.request(kind, record); });
}

/// With nothing behind the channel.
QVariant answerAtOnce(int /*kind*/, const QVariant & /*record*/)
{
    ExtensionUnit reply;
    reply.length = TrackingProtocol::blockLength;
    reply.data[TrackingProtocol::Tracking] = 1;
    return QVariant::fromValue(reply);
}

} // namespace

int main()
{
    if (RUNNING_ON_VALGRIND)
        return 0;
    const Application application;
    longestStall(answerAtOnce); // what is loaded once does not count
    const double floor = longestStall(answerAtOnce);
    for (const int delay : {0, 100, 5000}) {
        const std::string subject = "longest stall, " + std::to_string(delay) + " ms a transfer";
        Bench::figure(subject.c_str(), "ns", "", longestStallBehind(delay), floor);
    }
    return 0;
}
