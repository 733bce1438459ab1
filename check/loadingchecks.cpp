// Checks a plug-in before it becomes part of a window.

#include "check.h"
#include "host.h"
#include "pluginfile.h"
#include "report.h"

#include <QElapsedTimer>
#include <QPluginLoader>
#include <QPointer>
#include <QProcess>
#include <QStringList>

static void checkMetadata(Host &host)
{
    const QString problem = PluginFile::interfaceProblem(QPluginLoader(host.plugin).metaData());
    expect(problem.isEmpty(), "a Qt plug-in for this interface", problem);
}

static void checkQtVersion(Host &host)
{
    const QString problem = PluginFile::versionProblem(QPluginLoader(host.plugin).metaData());
    expect(problem.isEmpty(), "a plug-in that this Qt loads", problem);
}

static void checkExports(Host &host)
{
    QProcess nm;
    nm.start("nm", {"-D", "--defined-only", "--format=just-symbols", host.plugin});
    nm.waitForFinished();
    expect(nm.error() != QProcess::FailedToStart, "the program nm (package binutils)",
           "no such program");
    expect(nm.exitCode() == 0, "a list of exports from nm", nm.readAllStandardError());
    QStringList others = QString(nm.readAllStandardOutput()).split('\n');
    for (const char *const allowed : {"qt_plugin_instance", "qt_plugin_query_metadata", ""})
        others.removeAll(allowed);
    expect(others.isEmpty(), "only qt_plugin_instance and qt_plugin_query_metadata",
           QString("%1 more, such as %2").arg(others.size()).arg(others.value(0)));
}

static void checkSymbols(Host &host)
{
    QPluginLoader loader(host.plugin);
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    expect(loader.load(), "all symbols are found", loader.errorString());
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
    expect(first, "an instance", loader.errorString());
    expect(loader.instance() == first, "one instance", "another one");
    step("deleting the instance");
    delete first.data();
    QObject *const second = loader.instance();
    expect(second, "a new instance after the deletion of the first", "none");
    for (const char *const name : {qobject_interface_iid<OrvPluginApi *>(), "OrvPluginApi"})
        expect(second->qt_metacast(name), QString("a cast to \"%1\"").arg(name), "null");
}

static void checkIdentity(Host &host)
{
    host.load();
    OrvPluginApi *const api = host.api;
    expect(!api->name().isEmpty(), "a name", "an empty one");
    expect(api->category() >= 0, "a category of 0 or more", QString::number(api->category()));
}

std::vector<Check> loadingChecks()
{
    return {
        {"metadata", "The plug-in's metadata names the interface.", checkMetadata},
        {"qt-version", "It is built for this Qt, release or debug.", checkQtVersion, "metadata"},
        {"exports", "It exports only Qt's two entry points.", checkExports, "metadata"},
        {"symbols", "All symbols that it needs exist.", checkSymbols, "qt-version"},
        {"load-time", "It loads in less than 100 ms.", checkLoadTime, "symbols", "96", 3},
        {"instance", "It has one instance, casts to the interface, and a new instance after that.",
         checkInstance, "symbols"},
        {"identity", "It has a name and a category before it is inserted.", checkIdentity,
         "instance"},
    };
}
