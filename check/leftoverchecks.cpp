// Checks what a panel changes outside itself, and what it leaves behind.

#include "check.h"
#include "host.h"
#include "report.h"
#include "virtualtime.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QLayout>
#include <QLocale>
#include <QMetaProperty>
#include <QPixmapCache>
#include <QTimer>

#include <clocale>
#include <malloc.h>
#include <map>

using namespace std::chrono_literals;

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
    for (int life = 0; life < 3; ++life) {
        host.load();
        host.container->layout()->addWidget(new QWidget); // of another panel
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
        for (const QString &line : after)
            expect(before.contains(line), "nothing left behind or changed", line);
        for (const QString &line : before)
            expect(after.contains(line), "nothing removed", line);
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

std::vector<Check> leftoverChecks()
{
    return {
        {"leftovers", "It leaves the window and the application as they were.", checkLeftovers,
         "destruction"},
        {"lives", "Many panels in a row leak nothing.", checkLives, "destruction"},
        {"long-life", "It does not grow while it is used.", checkLongLife, "opens"},
    };
}
