// Checks a panel from insertWidget() until after its destruction.

#include "check.h"
#include "host.h"
#include "report.h"
#include "virtualtime.h"

#include <QApplication>
#include <QDir>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QStackedLayout>
#include <QThread>

#include <malloc.h>
#include <map>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

static void checkOpens(Host &host)
{
    host.open();
    host.live(1s);
    expect(!host.controls().isEmpty(), "visible widgets in the container", "none");
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

static void checkOpening(Host &host)
{
    for (const auto &status : {factoryStatus, Status{0, 1, 2, 2, 3}, Status{0, 0, 1, 1, 1}}) {
        host.load();
        host.camera.setStatus(status);
        host.api->name();
        host.api->category();
        host.api->getCurrentParams();
        host.live(2s);
        host.expectRequests("no request before insertWidget",
                            [](const Request &) { return false; });
        host.insert();
        const auto changesNothing = [&](const Request &request) {
            const QByteArray bytes = request.bytes();
            return request.asks() ||
                   (refusal(true, commandSelector, bytes).isEmpty() &&
                    static_cast<quint8>(bytes.at(valueOffset)) == status.at(fieldOf(bytes)));
        };
        host.expectRequests("only requests in insertWidget that change nothing", changesNothing);
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
            host.insert();
            host.live(200ms);
            host.window->show();
            host.live(200ms);
            expect(!host.controls().isEmpty(),
                   QString("visible widgets in a container with %1")
                       .arg(layout ? layout->metaObject()->className() : "no layout"),
                   "none");
        }
    }
}

static void checkThawed(Host &host)
{
    for (int life = 0; life < 10; ++life) {
        host.open();
        const auto expectThawed = [&] {
            VirtualTime::advance(1s);
            expect(host.window->updatesEnabled() && host.container->updatesEnabled(),
                   "a window that is thawed a second later", "a frozen one");
        };
        for (int uses = host.any(8); uses > 0; --uses) {
            host.useAny(0);
            expectThawed();
            host.camera.setValue(settingFields.at(host.any(4)), static_cast<quint8>(host.any(4)));
            expectThawed();
        }
        host.reset();
        expectThawed();
        host.useAny(0);
        host.destroyPanel();
        expectThawed();
    }
}

/// Everything outside a panel that it must leave unchanged, one line each.
static QStringList surroundings(const Host &host)
{
    QString lines;
    QDebug out(&lines);
    out << "items in the container's layout:" << host.container->layout()->count()
        << "\noverride cursor:" << QApplication::overrideCursor() << '\n';
    for (const QObject *const object :
         std::initializer_list<const QObject *>{qApp, host.window, host.container}) {
        for (const char *const property :
             {"styleSheet", "palette", "font", "cursor", "layoutDirection", "windowTitle",
              "quitOnLastWindowClosed", "enabled", "minimumSize", "maximumSize", "size"})
            out << object << property << object->property(property) << '\n';
    }
    const QObjectList children = host.window->findChildren<QObject *>();
    for (const QObject *const object : children)
        out << object << '\n';
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *const other : windows)
        out << (other->isVisible() ? other : nullptr) << '\n';
    return lines.split('\n');
}

static void checkLeftovers(Host &host)
{
    for (int life = 0; life < 10; ++life) {
        host.load();
        host.window->show();
        host.live(100ms);
        const QStringList before = surroundings(host);
        host.insert();
        for (int uses = host.any(5); uses > 0; --uses)
            host.useAny();
        host.destroyPanel();
        host.window->show();
        VirtualTime::advance(10s);
        QStringList more = surroundings(host);
        for (const QString &line : before)
            more.removeOne(line);
        expect(more.isEmpty(), "nothing left behind in the window", more.value(0));
    }
}

static void checkAfterDeath(Host &host)
{
    for (int life = 0; life < 20; ++life) {
        host.open();
        for (int uses = host.any(5); uses > 0; --uses)
            host.useAny();
        const bool panelFirst = host.any(2) == 0;
        panelFirst ? host.destroyPanel() : host.destroyWindow();
        host.takeRequests(); // drop those from before the destruction
        VirtualTime::advance(5s);
        if (panelFirst) {
            step("using the window without the panel");
            host.window->resize(700, 1100);
            host.window->hide();
            host.window->show();
            VirtualTime::advance(5s);
        }
        QThread::msleep(20); // gives other threads real time
        host.expectRequests("no request after the destruction of the panel",
                            [](const Request &) { return false; });
    }
}

/// Amounts that grow if a panel leaks.
static std::map<QString, long> resources()
{
    // Pages, not bytes: a small loss, such as a translator that stays installed, is no fault.
    return {{"pages of memory", static_cast<long>(mallinfo2().uordblks) / 4096},
            {"widgets", QApplication::allWidgets().size()},
            {"threads", QDir("/proc/self/task").count()},
            {"open files", QDir("/proc/self/fd").count()}};
}

static void checkLives(Host &host)
{
    constexpr int warmUp = 20;
    constexpr int lives = 100;
    std::map<QString, long> before;
    for (int life = 0; life < warmUp + lives; ++life) {
        if (life == warmUp)
            before = resources();
        host.open();
        host.destroyWindow();
        VirtualTime::advance(200ms);
    }
    for (const auto &[name, amount] : resources()) {
        const long growth = amount - before[name];
        expect(growth < lives, "less than one more per panel",
               QString("%1 more %2 after %3 panels").arg(growth).arg(name).arg(lives));
    }
}

std::vector<Check> lifeChecks()
{
    return {
        {"opens", "insertWidget() returns and shows something in the container.", checkOpens,
         "instance"},
        {"destruction", "It can be destroyed at any moment, before or with its window.",
         checkDestruction, "opens"},
        {"opening", "It sends nothing before insertWidget(), and changes nothing during it.",
         checkOpening, "destruction"},
        {"containers", "It works in every layout, hidden and shown, in both languages.",
         checkContainers, "destruction"},
        {"containers-144", "It works in every layout at 144 dots per inch.", checkContainers,
         "containers", "144"},
        {"containers-192", "It works in every layout at 192 dots per inch.", checkContainers,
         "containers", "192"},
        {"thawed", "The window never stays frozen.", checkThawed, "destruction"},
        {"leftovers", "It leaves nothing behind in the window.", checkLeftovers, "destruction"},
        {"after-death", "It makes no request after its destruction.", checkAfterDeath,
         "destruction"},
        {"lives", "A hundred panels in a row leak nothing.", checkLives, "destruction"},
    };
}
