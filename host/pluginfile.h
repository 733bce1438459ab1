#pragma once

#include <QJsonObject>
#include <QString>

class OrvPluginApi;
class QObject;

/// A settings-panel plug-in, loaded from its file.
struct PluginFile
{
    QObject *object = nullptr;   ///< the instance; the caller owns it
    OrvPluginApi *api = nullptr; ///< interface of the instance; null if loading failed
    QString path;                ///< of the file
    QString error;               ///< a sentence for the user if loading failed; else empty

    /// Loads the plug-in in the file `path`. Checks its metadata before any of its code runs.
    static PluginFile load(const QString &path);

    /// Why this host cannot use a plug-in with this metadata: the plug-in implements another
    /// interface, or needs another version of Qt. Empty if the host can use it.
    static QString interfaceProblem(const QJsonObject &metaData);
    static QString versionProblem(const QJsonObject &metaData);

    /// The file of the plug-in supplied with this program. Looks in the program's folder, then
    /// where the build puts it, then where it is installed.
    static QString defaultPath();
};
