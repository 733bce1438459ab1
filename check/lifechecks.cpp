// Checks a panel from insertWidget() until after its destruction.

#include "check.h"
#include "host.h"
#include "report.h"
#include "virtualtime.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLocale>
#include <QMetaProperty>
#include <QPixmapCache>
#include <QPluginLoader>
#include <QStackedLayout>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <clocale>
#include <malloc.h>
#include <map>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

static void checkOpens(Host &host)
{
    host.load();
    const auto start = VirtualTime::now;
    const auto realStart = Host::realTime();
    host.insert();
    const auto took = std::max(VirtualTime::now - start, Host::realTime() - realStart);
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
    for (const bool reset : {false, true}) {
        host.open();
        for (int change = 0; change < 20; ++change) {
            reset ? host.reset() : host.useAny(0);
            expectThawed();
            host.camera.setValue(settingFields.at(host.any(4)), static_cast<quint8>(host.any(4)));
            expectThawed();
        }
    }
    forEachUse(host, [&] {
        if (host.any(2) == 0)
            expectThawed();
        host.destroyPanel();
        expectThawed();
    });
}

/// Everything outside a panel that it must leave unchanged, one line each.
static QStringList surroundings(const Host &host)
{
    const QtMessageHandler handler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(handler);
    QString lines;
    QDebug out(&lines);
    out << "message handler:" << reinterpret_cast<void *>(handler)
        << "\nworking directory:" << QDir::currentPath() << "\nlocale:" << QLocale().name()
        << "\nlocale of the C library:" << setlocale(LC_ALL, nullptr)
        << "\nstyle:" << QApplication::style() << "\nfont:" << QApplication::font()
        << "\npalette:" << QApplication::palette().cacheKey()
        << "\noverride cursor:" << QApplication::overrideCursor() << '\n';
    const QMetaObject &application = *qApp->metaObject();
    for (int index = 0; index < application.propertyCount(); ++index)
        out << application.property(index).name() << application.property(index).read(qApp) << '\n';
    const QLayout *const layout = host.container->layout();
    out << "items in the container's layout:" << (layout ? layout->count() : -1) << '\n';
    for (const QObject *const object : {host.window.data(), host.container.data()}) {
        for (const char *const property :
             {"styleSheet", "palette", "font", "cursor", "layoutDirection", "windowTitle",
              "visible", "enabled", "minimumSize", "maximumSize"})
            out << object << property << object->property(property) << '\n';
    }
    const QObjectList children = host.window->findChildren<QObject *>();
    for (const QObject *const object : children)
        out << object << (object->property("visible").toBool() ? "visible" : "") << '\n';
    return lines.split('\n');
}

static void checkLeftovers(Host &host)
{
    const auto firstOfOnly = [](QStringList some, const QStringList &others) {
        for (const QString &line : others)
            some.removeOne(line);
        return some.value(0);
    };
    for (int life = 0; life < 3; ++life) {
        host.load();
        for (const int neighbour : {1, 2}) {
            Q_UNUSED(neighbour)
            host.container->layout()->addWidget(new QWidget);
        }
        host.window->show();
        host.live(100ms);
        const QWidgetList windows = QApplication::topLevelWidgets();
        const QStringList before = surroundings(host);
        host.insert();
        host.useAll();
        host.destroyPanel();
        host.window->show();
        VirtualTime::advance(10s);
        const QStringList after = surroundings(host);
        const QString more = firstOfOnly(after, before);
        const QString less = firstOfOnly(before, after);
        expect(more.isEmpty(), "nothing left behind or changed", more);
        expect(less.isEmpty(), "nothing removed", less);
        const QWidgetList windowsAfter = QApplication::topLevelWidgets();
        for (QWidget *const other : windowsAfter)
            expect(
                windows.contains(other), "no window left behind",
                QString("a %1 \"%2\"").arg(other->metaObject()->className(), other->objectName()));
        // An event loop ends at once after a call of quit().
        QEventLoop loop;
        QTimer::singleShot(0, &loop, [&loop] { loop.exit(1); });
        expect(loop.exec() == 1, "an application that goes on", "a call of quit() or exit()");
    }
}

static void checkAfterDeath(Host &host)
{
    QPluginLoader loader(host.plugin);
    loader.setLoadHints({}); // by default, Qt does not unload a plug-in
    loader.load();
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
    host.open();
    host.destroyWindow();
    step("after unloading the plug-in");
    while (loader.unload()) {
    }
    VirtualTime::advance(10s);
}

/// Amounts that grow if a panel leaks.
static std::map<QString, long> resources()
{
    QPixmapCache::clear();
    const auto memory = mallinfo2();
    return {{"bytes of memory", static_cast<long>(memory.uordblks + memory.hblkhd)},
            {"widgets", QApplication::allWidgets().size()},
            {"threads", QDir("/proc/self/task").count()},
            {"open files", QDir("/proc/self/fd").count()}};
}

/// Ends the check if an amount grows by at least one per turn, or by `bytes` of memory, in each of
/// five periods. Each has as many turns as all before it, so a cache with a limit stops growing.
static void expectNoGrowth(const Host &host, int turns, long bytes,
                           const std::function<void()> &turn)
{
    std::map<QString, long> growing; // the amounts that have grown in each period, and their values
    for (int period = 0; period <= 5 && host.hasTime(); ++period) {
        for (int count = 0; count < turns; ++count)
            turn();
        std::map<QString, long> still;
        for (const auto &[name, amount] : resources()) {
            const auto before = growing.find(name);
            const long growth = before == growing.end() ? 0 : amount - before->second;
            const bool grows = growth >= turns * (name.startsWith("bytes") ? bytes : 1);
            if (period == 0 || grows)
                still[name] = amount;
            expect(period < 5 || still.count(name) == 0, "no growth",
                   QString("%1 more %2 in %3 turns").arg(growth).arg(name).arg(turns));
        }
        growing = still;
        turns *= period > 0 ? 2 : 1;
    }
}

static void checkLives(Host &host)
{
    // A small loss, such as a translator that stays installed, is no fault.
    expectNoGrowth(host, 8, 4096, [&] {
        host.open();
        host.destroyWindow();
        VirtualTime::advance(200ms);
    });
}

static void checkLongLife(Host &host)
{
    host.open();
    expectNoGrowth(host, 1, 256, [&] {
        host.useAll();
        step("reading the camera's status");
        for (int second = 0; second < 100; ++second) {
            VirtualTime::now += 1s;
            VirtualTime::catchUp();
        }
    });
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
        {"leftovers", "It leaves the window and the application as they were.", checkLeftovers,
         "destruction"},
        {"after-death", "It makes no request during or after its destruction.", checkAfterDeath,
         "destruction"},
        {"lives", "A hundred panels in a row leak nothing.", checkLives, "destruction"},
        {"long-life", "It does not grow while it is used.", checkLongLife, "opens"},
    };
}
