#pragma once

#include "simulatedcamera.h"

#include <QString>
#include <QStringList>

/// The host's command line.
struct Options
{
    QString plugin;   ///< file of the plug-in; empty: PluginFile::defaultPath()
    int language = 1; ///< the setting "language": 1 English, 0 Chinese
    QString camera;   ///< node of a real camera; empty: use the simulated one
    int unit = 0;     ///< number of the real camera's extension unit; 0: find it
    bool readOnly = false;
    bool listCameras = false;
    TrackingProtocol::Status status = TrackingProtocol::factoryStatus; ///< of the simulated camera
    Faults faults = noFaults;                                          ///< of the simulated camera
    QString trace; ///< file to write; empty: none
    bool tour = false;
    QString screenshot; ///< file to write; empty: none
    bool help = false;
    bool version = false;
    QString error; ///< a sentence for the user if the arguments are invalid; else empty

    /// Reads the arguments; the first is the program's name. Needs no application object.
    static Options read(const QStringList &arguments);

    /// The text of --help. Needs a QCoreApplication, for the program's name.
    static QString helpText();
};
