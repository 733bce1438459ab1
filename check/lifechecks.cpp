// Checks a panel from insertWidget() until after its destruction.

#include "check.h"
#include "host.h"
#include "report.h"
#include "virtualtime.h"

#include <QApplication>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QStackedLayout>
#include <QThread>

#include <algorithm>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

static void checkOpens(Host &host)
{
    host.load();
    const auto start = VirtualTime::now;
    const auto ownStart = Host::ownTime();
    host.insert();
    const auto took = std::max(VirtualTime::now - start, Host::ownTime() - ownStart);
    step("insertWidget()");
    expect(took < 250ms, "less than 250 ms in insertWidget()", QString("%1 ms").arg(took / 1ms));
    expect(!QApplication::activeModalWidget(), "no dialog in insertWidget()", "one");
    host.window->show();
    host.live(1s);
    expect(!host.controls().isEmpty(), "visible widgets in the container", "none");
}

static void checkIdentity(Host &host)
{
    host.load();
    const QString name = host.api->name();
    host.api->category();
    expect(!name.isEmpty(), "a name", "an empty one");
    host.insert();
    host.window->show();
    host.useAll();
    const QString later = host.api->name();
    expect(later == name, "the same name at all times: " + name, later);
}

/// Opens a panel for each main way to use each control, uses it, and calls `then`.
static void forEachUse(Host &host, const std::function<void()> &then)
{
    for (int next = 0; host.hasTime(); ++next) {
        host.open();
        const QWidgetList controls = host.controls();
        if (next / Host::mainWays >= controls.size())
            return;
        host.use(controls.at(next / Host::mainWays), next % Host::mainWays);
        then();
    }
}

static void checkDestruction(Host &host)
{
    for (int life = 0; life < 40; ++life) {
        host.load();
        host.window->setVisible(host.any(2) == 0);
        if (host.any(10) > 0)
            host.insert();
        host.window->setVisible(host.any(4) > 0);
        host.live(host.anyTime(1 + host.any(5000)));
        for (int uses = host.any(5); uses > 0; --uses)
            host.useAny();
        if (host.any(2) == 0) {
            host.destroyPanel();
            VirtualTime::advance(host.anyTime(100));
        }
        host.destroyWindow();
        VirtualTime::advance(1s);
    }
}

static void checkDialogs(Host &host)
{
    for (const bool panelFirst : {true, false}) {
        host.inDialog = [&] {
            panelFirst ? host.destroyPanel() : host.destroyWindow();
            VirtualTime::advance(1s);
            const QWidget *const left = Host::openDialog();
            expect(!left, "no dialog or menu that outlives the panel",
                   left ? left->metaObject()->className() : "");
        };
        forEachUse(host, [&] { host.live(1s); });
    }
}

static void checkOpening(Host &host)
{
    for (const auto &status : {factoryStatus, Status{0, 1, 2, 2, 3}, Status{0, 0, 1, 1, 1}}) {
        host.load();
        host.camera.setStatus(status);
        host.expectRequests("no request before insertWidget",
                            [](const Request &) { return false; });
        host.api->name();
        host.api->category();
        host.api->getCurrentParams();
        host.live(2s);
        const auto changesNothing = [&](const Request &request) {
            const QByteArray bytes = request.bytes();
            return request.asks() ||
                   (refusal(true, commandSelector, bytes).isEmpty() &&
                    static_cast<quint8>(bytes.at(valueOffset)) == status.at(fieldOf(bytes)));
        };
        host.expectRequests("only requests in insertWidget that change nothing", changesNothing);
        host.insert();
        host.expectRequests({}, nullptr);
        host.destroyWindow();
        VirtualTime::advance(5s); // until this panel can make no more requests
    }
}

static void checkContainers(Host &host)
{
    for (const int variant : {0, 1, 2, 3}) {
        for (QLayout *const layout :
             std::initializer_list<QLayout *>{new QVBoxLayout, new QHBoxLayout, new QGridLayout,
                                              new QFormLayout, new QStackedLayout, nullptr}) {
            host.load();
            delete host.container->layout();
            if (layout)
                host.container->setLayout(layout);
            host.language = variant / 2;
            host.window->setVisible(variant % 2 == 0);
            const QString kind = layout ? layout->metaObject()->className() : "no layout";
            host.insert(" into a container with " + kind);
            host.live(200ms);
            host.window->show();
            host.live(200ms);
            expect(!host.controls().isEmpty(), "visible widgets in a container with " + kind,
                   "none");
        }
    }
}

static void checkThawed(Host &host)
{
    const auto expectThawed = [&] {
        VirtualTime::advance(1s);
        expect(host.window->updatesEnabled() && host.container->updatesEnabled(),
               "a window that is thawed a second later", "a frozen one");
    };
    host.open();
    host.useAll(0ms, expectThawed);
    for (int change = 0; change < 20; ++change) {
        host.camera.setValue(settingFields.at(host.any(4)), static_cast<quint8>(host.any(4)));
        expectThawed();
        host.reset();
        expectThawed();
    }
    forEachUse(host, [&] {
        host.destroyPanel();
        expectThawed();
    });
}

static void checkAfterDeath(Host &host)
{
    const auto expectSilence = [&] {
        host.expectRequests("no request during or after the destruction of the panel",
                            [](const Request &) { return false; });
        host.any(2) == 0 ? host.destroyPanel() : host.destroyWindow();
        VirtualTime::advance(5s);
        if (!host.window)
            return;
        step("using the window without the panel");
        host.window->resize(700, 1100);
        host.window->hide();
        host.window->show();
        VirtualTime::advance(5s);
    };
    forEachUse(host, expectSilence);
    host.open();
    expectSilence();
    QThread::msleep(1200); // gives other threads real time
}

std::vector<Check> lifeChecks()
{
    return {
        {"opens", "insertWidget() returns soon and shows something in the container.", checkOpens,
         "instance", "96", 3},
        {"identity", "It has a name, always the same.", checkIdentity, "opens"},
        {"destruction", "It can be destroyed at any moment, before or with its window.",
         checkDestruction, "opens"},
        {"dialogs", "It can be destroyed while its dialog or menu is open.", checkDialogs,
         "destruction"},
        {"opening", "It sends nothing before insertWidget(), and changes nothing during it.",
         checkOpening, "destruction"},
        {"containers", "It works in every layout, hidden and shown, in both languages.",
         checkContainers, "destruction"},
        {"containers-144", "It works in every layout at 144 dots per inch.", checkContainers,
         "containers", "144"},
        {"containers-192", "It works in every layout at 192 dots per inch.", checkContainers,
         "containers", "192"},
        {"thawed", "The window never stays frozen.", checkThawed, "destruction"},
        {"after-death", "It makes no request during or after its destruction.", checkAfterDeath,
         "destruction"},
    };
}
