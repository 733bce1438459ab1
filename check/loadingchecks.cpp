// Checks a plug-in up to its first instance, before insertWidget().

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
    expect(problem.isEmpty(), "a plug-in that this version of Qt can load", problem);
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
           QString("%1 more, such as %2").arg(others.size()).arg(others.value(0)));
}

static void checkSymbols(Host &host)
{
    QPluginLoader loader(host.plugin);
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    expect(loader.load(), "a definition of every symbol", loader.errorString());
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
    expect(loader.instance() == first, "the same instance again", "another one");
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
    expect(!host.api->name().isEmpty(), "a name", "an empty one");
    const int category = host.api->category();
    expect(category >= 0, "a category of 0 or more", QString::number(category));
}

std::vector<Check> loadingChecks()
{
    return {
        {"metadata", "The plug-in's metadata names the interface.", checkMetadata},
        {"qt-version", "It can be loaded by this version of Qt.", checkQtVersion, "metadata"},
        {"exports", "It exports only Qt's two entry points.", checkExports, "metadata"},
        {"symbols", "Every symbol that it uses is defined.", checkSymbols, "qt-version"},
        {"load-time", "It loads in less than 100 ms.", checkLoadTime, "symbols", "96", 3},
        {"instance", "It has one instance at a time, which can be cast to the interface.",
         checkInstance, "symbols"},
        {"identity", "It has a name and a category before insertWidget().", checkIdentity,
         "instance"},
    };
}
