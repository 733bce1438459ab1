#pragma once

#include <QJsonObject>
#include <QString>

class OrvPluginApi;
class QObject;

/// A settings-panel plug-in, loaded from its file.
struct PluginFile
{
    QObject *object = nullptr;   ///< the instance; the caller destroys it
    OrvPluginApi *api = nullptr; ///< the same instance; null if `error` says why there is none
    QString error;               ///< a sentence for the user

    /// Loads the plug-in in `path`. None of its code runs before its metadata is found fit.
    static PluginFile load(const QString &path);

    /// Why no host can use a plug-in with this metadata: it is for another interface, or for
    /// another Qt. Empty if neither is so.
    static QString interfaceProblem(const QJsonObject &metaData);
    static QString versionProblem(const QJsonObject &metaData);

    /// The module that goes with this program: in its folder, in the build's plug-in folder or
    /// where it is installed.
    static QString defaultPath();
};
