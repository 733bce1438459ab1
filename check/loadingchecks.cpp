// What can be said of a plug-in before it is given anything to do.

#include "check.h"
#include "orvpluginapi.h"
#include "pluginfile.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QPluginLoader>
#include <QPointer>
#include <QProcess>
#include <QStringList>

namespace {

constexpr int loadLimit = 100; ///< ms

QString absolute(const Task &task)
{
    // A relative name would be looked for in Qt's plug-in folders.
    return QFileInfo(task.plugin).absoluteFilePath();
}

/// The instance, or the end of the check.
QObject *instanceOf(QPluginLoader &loader)
{
    QObject *const instance = loader.instance();
    expect(instance, QStringLiteral("an instance"), loader.errorString());
    return instance;
}

void checkMetadata(const Task &task)
{
    const QString problem = PluginFile::interfaceProblem(QPluginLoader(absolute(task)).metaData());
    expect(problem.isEmpty(),
           QStringLiteral("a Qt plug-in for \"%1\"")
               .arg(QString::fromLatin1(qobject_interface_iid<OrvPluginApi *>())),
           problem);
}

void checkQtVersion(const Task &task)
{
    const QString problem = PluginFile::versionProblem(QPluginLoader(absolute(task)).metaData());
    expect(problem.isEmpty(), QStringLiteral("a plug-in that this Qt loads"), problem);
}

void checkSymbols(const Task &task)
{
    QPluginLoader loader(absolute(task));
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    expect(loader.load(), QStringLiteral("all symbols are found"), loader.errorString());
}

void checkExports(const Task &task)
{
    QProcess nm;
    nm.start(QStringLiteral("nm"), {QStringLiteral("-D"), QStringLiteral("--defined-only"),
                                    QStringLiteral("--format=just-symbols"), absolute(task)});
    expect(nm.waitForFinished() && nm.exitCode() == 0, QStringLiteral("nm lists the exports"),
           nm.errorString());
    const QString all = QString::fromUtf8(nm.readAllStandardOutput());
    QStringList others = all.split(QLatin1Char('\n'));
    others.removeAll(QString());
    others.removeAll(QStringLiteral("qt_plugin_instance"));
    others.removeAll(QStringLiteral("qt_plugin_query_metadata"));
    expect(others.isEmpty(),
           QStringLiteral("qt_plugin_instance and qt_plugin_query_metadata alone"),
           QStringLiteral("%1 more, such as %2").arg(others.size()).arg(others.value(0)));
}

void checkLoadTime(const Task &task)
{
    QPluginLoader loader(absolute(task));
    QElapsedTimer time;
    time.start();
    loader.load();
    const auto took = time.elapsed();
    expect(took < loadLimit, QStringLiteral("less than %1 ms").arg(loadLimit),
           QStringLiteral("%1 ms").arg(took));
}

void checkInstance(const Task &task)
{
    QPluginLoader loader(absolute(task));
    const QPointer<QObject> first = instanceOf(loader);
    expect(loader.instance() == first, QStringLiteral("one instance"), QStringLiteral("two"));
    step(QStringLiteral("deleting the instance"));
    delete first.data();
    QObject *const second = instanceOf(loader);
    expect(second->isWidgetType() || second->metaObject(), QStringLiteral("a new instance"),
           QStringLiteral("a dead one"));
    for (const char *const name : {qobject_interface_iid<OrvPluginApi *>(), "OrvPluginApi"}) {
        expect(second->qt_metacast(name),
               QStringLiteral("a cast to \"%1\"").arg(QString::fromLatin1(name)),
               QStringLiteral("null"));
    }
}

void checkIdentity(const Task &task)
{
    QPluginLoader loader(absolute(task));
    auto *const api = qobject_cast<OrvPluginApi *>(instanceOf(loader));
    expect(!api->name().isEmpty(), QStringLiteral("a name"), QStringLiteral("an empty one"));
    expect(api->category() >= 0, QStringLiteral("a category of 0 or more"),
           QString::number(api->category()));
}

} // namespace

std::vector<Check> loadingChecks()
{
    return {
        {"metadata", "Its metadata name the interface, without any of its code run.",
         checkMetadata},
        {"qt-version", "It is built for this Qt.", checkQtVersion, "metadata"},
        {"exports", "It exports its two entry points and nothing else.", checkExports, "metadata"},
        {"symbols", "All symbols that it needs are found.", checkSymbols, "qt-version"},
        {"load-time", "It loads in less than 100 ms.", checkLoadTime, "symbols", 96, 3},
        {"instance", "It has one instance, a new one after its deletion, and both casts.",
         checkInstance, "symbols"},
        {"identity", "It has a name and a category, before it is inserted too.", checkIdentity,
         "instance"},
    };
}
