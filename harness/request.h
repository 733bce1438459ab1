#pragma once

#include "devicerecords.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

/// A request that a panel made through its channel.
struct Request
{
    int kind;
    QVariant record;
    bool onGuiThread;

    bool isExtension() const;
    ExtensionUnit unit() const; ///< all zero unless isExtension()
    QByteArray bytes() const;   ///< the payload of unit()

    bool asks() const;       ///< whether it only queries a setting or reads the camera
    QString problem() const; ///< why the request is malformed; empty if it is well-formed
    QString inWords() const;
};
