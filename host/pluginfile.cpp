#include "pluginfile.h"

#include "orvpluginapi.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QVersionNumber>

QString PluginFile::interfaceProblem(const QJsonObject &metaData)
{
    if (metaData.isEmpty())
        return "it is not a Qt plug-in";

    const QString wanted = qobject_interface_iid<OrvPluginApi *>();
    const QString found = metaData.value("IID").toString();
    if (found != wanted)
        return QString(R"(it is a plug-in for "%1", not for "%2")").arg(found, wanted);
    return {};
}

QString PluginFile::versionProblem(const QJsonObject &metaData)
{
    const int version = metaData.value("version").toInt();
    const QVersionNumber built(version >> 16, (version >> 8) & 0xFF);
    const QVersionNumber running = QVersionNumber::fromString(qVersion());
    if (built.majorVersion() != running.majorVersion() || built > running) {
        return QString("it is built for Qt %1, and this is Qt %2")
            .arg(built.toString(), running.toString());
    }
    return {};
}

/// Why this program cannot use `file`, apart from the metadata that Qt finds in it.
static QString fileProblem(const QFileInfo &file)
{
    if (file.isDir())
        return "it is a folder";
    if (!file.exists())
        return "there is no such file";
    QFile content(file.filePath());
    if (!content.open(QIODevice::ReadOnly))
        return content.errorString();
    // Another major version stores the metadata differently, so look for the library it needs.
    static const QRegularExpression qtLibrary("libQt([0-9])Core\\.so");
    const QByteArray bytes = content.readAll();
    const auto match = qtLibrary.match(QString::fromLatin1(bytes.constData(), bytes.size()));
    if (match.hasMatch() && match.captured(1).toInt() != QT_VERSION_MAJOR)
        return QString("it is built for Qt %1, and this is Qt %2")
            .arg(match.captured(1), qVersion());
    return {};
}

PluginFile PluginFile::load(const QString &path)
{
    PluginFile plugin;
    plugin.path = path;
    const QFileInfo file(path);
    // QPluginLoader searches Qt's plug-in folders for relative names.
    QPluginLoader loader(file.absoluteFilePath());
    const QJsonObject metaData = loader.metaData();
    QString problem = metaData.isEmpty() ? fileProblem(file) : QString();
    if (problem.isEmpty())
        problem = interfaceProblem(metaData);
    if (problem.isEmpty())
        problem = versionProblem(metaData);
    if (problem.isEmpty()) {
        plugin.object = loader.instance();
        plugin.api = qobject_cast<OrvPluginApi *>(plugin.object);
        if (!plugin.api) {
            problem = plugin.object ? "it does not implement the interface that it declares"
                                    : loader.errorString();
        }
    }
    if (!problem.isEmpty())
        plugin.error = QString("Cannot use the plug-in \"%1\": %2.").arg(path, problem);
    return plugin;
}

QString PluginFile::defaultPath()
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString name("libm24_tracking.so");
    for (const QString &file : {name, "../plugin/" + name, ORVHOST_MODULES "/" + name}) {
        if (folder.exists(file))
            return QDir::cleanPath(folder.filePath(file));
    }
    return folder.filePath(name);
}
