#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>

#include <cstddef>

class QWidget;

/// \file
/// The records that cross OrvPluginApi::commandChannel, each wrapped in a QVariant.
///
/// Compile hosts and plug-ins with these same declarations. Qt matches records by metatype name
/// only, so it does not detect different layouts at run time. The assertions below fix the layout
/// of a 64-bit build.

/// One transfer to or from a vendor control of the camera's UVC extension unit.
struct ExtensionUnit
{
    bool write = false;    ///< true: the host sends `data` (SET_CUR); false: it reads (GET_CUR)
    qint64 selector = 0;   ///< number of the control in the extension unit
    quint8 data[255] = {}; ///< the payload, then zeros
    quint64 length = 0;    ///< payload bytes; 0 in a get, or in an answer without data
};

/// A query for a setting of the host. The answer is the setting's value.
struct SettingData
{
    QString name;   ///< the setting's key
    QVariant value; ///< sent with the query; the int 0 for "language"
};

/// A notice about the camera. The host defines the meaning of the fields. The sender must set every
/// field.
struct CameraData
{
    QWidget *object; ///< a widget of the panel, valid only during the call
    bool flag;       ///< true from this panel
    qint64 param1;   ///< 3 from this panel
    qint64 param2;   ///< 0 from this panel
    qint64 param3;   ///< 2 from this panel
};

Q_DECLARE_METATYPE(ExtensionUnit)
Q_DECLARE_METATYPE(SettingData)
Q_DECLARE_METATYPE(CameraData)

static_assert(sizeof(void *) == 8, "the layouts below are for 64-bit builds");

static_assert(sizeof(ExtensionUnit) == 280, "ExtensionUnit has changed its layout");
static_assert(offsetof(ExtensionUnit, write) == 0, "ExtensionUnit has changed its layout");
static_assert(offsetof(ExtensionUnit, selector) == 8, "ExtensionUnit has changed its layout");
static_assert(offsetof(ExtensionUnit, data) == 16, "ExtensionUnit has changed its layout");
static_assert(offsetof(ExtensionUnit, length) == 272, "ExtensionUnit has changed its layout");

static_assert(sizeof(SettingData) == 24, "SettingData has changed its layout");
static_assert(offsetof(SettingData, name) == 0, "SettingData has changed its layout");
static_assert(offsetof(SettingData, value) == 8, "SettingData has changed its layout");

static_assert(sizeof(CameraData) == 40, "CameraData has changed its layout");
static_assert(offsetof(CameraData, object) == 0, "CameraData has changed its layout");
static_assert(offsetof(CameraData, flag) == 8, "CameraData has changed its layout");
static_assert(offsetof(CameraData, param1) == 16, "CameraData has changed its layout");
static_assert(offsetof(CameraData, param2) == 24, "CameraData has changed its layout");
static_assert(offsetof(CameraData, param3) == 32, "CameraData has changed its layout");
