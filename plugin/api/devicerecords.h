#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>

#include <cstddef>

class QWidget;

/// \file
/// The records that cross OrvPluginApi::commandChannel, each wrapped in a QVariant.
///
/// Host and plug-in compile these same declarations. Qt matches the records by metatype name
/// alone, so a side whose field order or widths drifted would not be noticed at run time: the
/// assertions below hold the layout of a 64-bit build in place.

/// One transfer to or from a vendor control of the camera's extension unit.
struct ExtensionUnit
{
    bool write = false;    ///< true: SET_CUR, the host sends `data`; false: GET_CUR
    qint64 selector = 0;   ///< the control of the extension unit
    quint8 data[255] = {}; ///< the payload; bytes from `length` on are zero
    quint64 length = 0;    ///< valid bytes in `data`; 0 in an answer: the camera gave none
};

/// A query for one setting of the host; the answer is the setting's value.
struct SettingData
{
    QString name;   ///< the setting's key
    QVariant value; ///< goes with the query; the int 0 for "language"
};

/// A request of the host's own about the camera. An aggregate: whoever makes one sets every field.
/// What the fields mean is the host's affair.
struct CameraData
{
    QWidget *object; ///< a widget of the panel, to be used within the call alone
    bool flag;       ///< true in every request of this panel
    qint64 param1;   ///< 3 in every request of this panel
    qint64 param2;   ///< 0 in every request of this panel
    qint64 param3;   ///< 2 in every request of this panel
};

Q_DECLARE_METATYPE(ExtensionUnit)
Q_DECLARE_METATYPE(SettingData)
Q_DECLARE_METATYPE(CameraData)

static_assert(sizeof(void *) == 8, "the layouts below are those of a 64-bit build");

static_assert(sizeof(ExtensionUnit) == 280, "ExtensionUnit has drifted");
static_assert(offsetof(ExtensionUnit, write) == 0, "ExtensionUnit has drifted");
static_assert(offsetof(ExtensionUnit, selector) == 8, "ExtensionUnit has drifted");
static_assert(offsetof(ExtensionUnit, data) == 16, "ExtensionUnit has drifted");
static_assert(offsetof(ExtensionUnit, length) == 272, "ExtensionUnit has drifted");

static_assert(sizeof(SettingData) == 24, "SettingData has drifted");
static_assert(offsetof(SettingData, name) == 0, "SettingData has drifted");
static_assert(offsetof(SettingData, value) == 8, "SettingData has drifted");

static_assert(sizeof(CameraData) == 40, "CameraData has drifted");
static_assert(offsetof(CameraData, object) == 0, "CameraData has drifted");
static_assert(offsetof(CameraData, flag) == 8, "CameraData has drifted");
static_assert(offsetof(CameraData, param1) == 16, "CameraData has drifted");
static_assert(offsetof(CameraData, param2) == 24, "CameraData has drifted");
static_assert(offsetof(CameraData, param3) == 32, "CameraData has drifted");
