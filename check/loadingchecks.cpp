// Checks a plug-in up to its first instance, before insertWidget().

#include "check.h"
#include "host.h"
#include "report.h"

#include <QElapsedTimer>
#include <QPluginLoader>
#include <QPointer>
#include <QProcess>
#include <QStringList>

static void checkLoads(Host &host)
{
    host.load();
}

static void checkExports(Host &host)
{
    QProcess nm;
    nm.start("nm", {"-D", "--defined-only", "--format=just-symbols", host.plugin});
    const bool hasRun = nm.waitForFinished() && nm.exitCode() == 0;
    expect(hasRun, "a list of exports from nm (package binutils)",
           nm.errorString() + ' ' + nm.readAllStandardError());
    QStringList others = QString(nm.readAllStandardOutput()).split('\n');
    for (const char *const allowed : {"qt_plugin_instance", "qt_plugin_query_metadata", ""})
        others.removeAll(allowed);
    expect(others.isEmpty(), "only qt_plugin_instance and qt_plugin_query_metadata",
           QString("%1 more, such as %2; hide them with a version script, or build the panel with "
                   "m24_add_settings_panel()")
               .arg(others.size())
               .arg(others.value(0)));
}

static void checkLoadTime(Host &host)
{
    QElapsedTimer time;
    time.start();
    QPluginLoader(host.plugin).load();
    expect(time.elapsed() < 100, "less than 100 ms", QString("%1 ms").arg(time.elapsed()));
}

static void checkInstance(Host &host)
{
    QPluginLoader loader(host.plugin);
    const QPointer<QObject> first = loader.instance();
    expect(loader.instance() == first, "the same instance again", "another one");
    step("deleting the instance");
    delete first.data();
    expect(qobject_cast<OrvPluginApi *>(loader.instance()),
           "a new instance after the deletion of the first", "none");
}

std::vector<Check> loadingChecks()
{
    return {
        {"loads", "It is a plug-in for this interface and this Qt, and lacks no symbol.",
         checkLoads},
        {"exports", "It exports only Qt's two entry points.", checkExports, "loads"},
        {"load-time", "It loads in less than 100 ms.", checkLoadTime, "loads", "96", 3},
        {"instance", "It has one instance at a time.", checkInstance, "loads"},
    };
}
