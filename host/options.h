#pragma once

#include "faults.h"
#include "trackingprotocol.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What the command line asks of the host.
struct Options
{
    QString plugin;   ///< file of the plug-in; empty: the one beside the program
    int language = 1; ///< the setting "language": 1 English, 0 Chinese
    QString camera;   ///< node of a real camera; empty: the simulated one
    int unit = 0;     ///< number of the camera's extension unit; 0: to be found
    bool readOnly = false;
    bool listCameras = false;
    TrackingProtocol::Status status = TrackingProtocol::factoryStatus; ///< of the simulated camera
    Faults faults = noFaults;                                          ///< of the simulated camera
    QString trace;                                                     ///< file; empty: none
    QByteArray dotsPerInch; ///< empty: as the screen has it
    QByteArray scaleFactor; ///< empty: as the screen has it
    bool tour = false;
    bool gallery = false;
    QString picture;    ///< file the gallery shows; empty: its own picture
    QString pictures;   ///< folder to write the gallery's pictures into; empty: none
    QString screenshot; ///< file to write; empty: none
    bool help = false;
    bool version = false;
    QString error; ///< a sentence for the user if the arguments are not to be followed

    /// Reads the arguments, of which the first is the program's name. Needs no application.
    static Options read(const QStringList &arguments);

    /// What --help prints. Takes the program's name from a QCoreApplication.
    static QString helpText();
};
