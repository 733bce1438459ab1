#include "pluginfile.h"

#include "orvpluginapi.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>
#include <QVersionNumber>

QString PluginFile::interfaceProblem(const QJsonObject &metaData)
{
    if (metaData.isEmpty())
        return QStringLiteral("it is not a Qt plug-in");

    const QString wanted = QString::fromLatin1(qobject_interface_iid<OrvPluginApi *>());
    const QString found = metaData.value(QLatin1String("IID")).toString();
    if (found != wanted)
        return QStringLiteral("it is a plug-in for \"%1\", not for \"%2\"").arg(found, wanted);
    return {};
}

QString PluginFile::versionProblem(const QJsonObject &metaData)
{
    const int version = metaData.value(QLatin1String("version")).toInt();
    const QVersionNumber built(version >> 16, (version >> 8) & 0xFF);
    const QVersionNumber running = QVersionNumber::fromString(QLatin1String(qVersion()));
    if (built.majorVersion() != running.majorVersion() || built > running) {
        return QStringLiteral("it is built for Qt %1, and this is Qt %2")
            .arg(built.toString(), running.toString());
    }
    return {};
}

PluginFile PluginFile::load(const QString &path)
{
    PluginFile plugin;
    const QFileInfo file(path);
    // A relative name would be looked for in Qt's plug-in folders.
    QPluginLoader loader(file.absoluteFilePath());
    QString problem = file.isFile() ? interfaceProblem(loader.metaData())
                                    : QStringLiteral("there is no such file");
    if (problem.isEmpty())
        problem = versionProblem(loader.metaData());
    if (problem.isEmpty()) {
        plugin.object = loader.instance();
        plugin.api = qobject_cast<OrvPluginApi *>(plugin.object);
        if (!plugin.api) {
            problem = plugin.object ? QStringLiteral("its instance lacks the announced interface")
                                    : loader.errorString();
        }
    }
    if (!problem.isEmpty())
        plugin.error = QStringLiteral("Cannot use the plug-in \"%1\": %2.").arg(path, problem);
    return plugin;
}

QString PluginFile::defaultPath()
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString name = QStringLiteral("libm24_tracking.so");
    // Where the build and where an installation puts it.
    for (const char *const other : {"../plugin", ORVHOST_MODULES}) {
        const QDir modules(folder.filePath(QLatin1String(other)));
        if (!folder.exists(name) && modules.exists(name))
            return QDir::cleanPath(modules.filePath(name));
    }
    return folder.filePath(name);
}
