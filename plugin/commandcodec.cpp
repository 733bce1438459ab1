// Command codec: puts commands, status reads and queries into records for the host's channel.

#include "controltrackingplugin.h"

#include <QDebug>

#include <algorithm>
#include <cstring>

namespace {

constexpr int lengthOffset = 4;
constexpr int valueOffset = 5;
constexpr int singleSize = 4;

static_assert(sizeof(float) == singleSize, "tables hold single-precision numbers");

void startPayload(M24_Extension &ext)
{
    std::fill_n(ext.payload, ext.payloadSize, quint8(0));
    std::copy_n(ext.header, sizeof ext.header, ext.payload);
    ext.payload[lengthOffset] = ext.valueLength;
}

} // namespace

void ControlTrackingPlugin::fillPayload(M24_Extension &ext, int value)
{
    startPayload(ext);
    for (int i = 0; i < ext.valueLength; ++i)
        ext.payload[valueOffset + i] = quint8(value >> (8 * (ext.valueLength - 1 - i)));
}

void ControlTrackingPlugin::fillPayloadBytes(M24_Extension &ext)
{
    startPayload(ext);
    std::copy_n(ext.valueData, ext.valueLength, ext.payload + valueOffset);
}

void ControlTrackingPlugin::sendPayload(M24_Extension &ext)
{
    ExtensionUnit unit;
    unit.write = true;
    unit.selector = ext.setSelector;
    unit.length = quint64(ext.payloadSize);
    std::copy_n(ext.payload, ext.payloadSize, unit.data);
    commandChannel(ChannelRequest::Extension, QVariant::fromValue(unit));
}

void ControlTrackingPlugin::sendCommand(M24_Extension &ext, int value)
{
    fillPayload(ext, value);
    sendPayload(ext);
}

ExtensionUnit ControlTrackingPlugin::readStatus(const M24_Extension &ext)
{
    ExtensionUnit unit;
    unit.selector = ext.getSelector;
    return qvariant_cast<ExtensionUnit>(
        commandChannel(ChannelRequest::Extension, QVariant::fromValue(unit)));
}

QVariant ControlTrackingPlugin::querySetting(const QString &name)
{
    return commandChannel(ChannelRequest::Setting,
                          QVariant::fromValue(SettingData{name, QVariant(0)}));
}

void ControlTrackingPlugin::sendCameraData(const CameraData &record)
{
    commandChannel(ChannelRequest::Camera, QVariant::fromValue(record));
}

void ControlTrackingPlugin::setFloatValue(unsigned char *buffer, int index, float value)
{
    unsigned char *const slot = buffer + singleSize * index;
    std::memcpy(slot, &value, singleSize);
    qDebug() << "setFloatValue : " << value << ", data : " << slot[0] << "," << slot[1] << ","
             << slot[2] << "," << slot[3];
}

float ControlTrackingPlugin::getFloatValue(unsigned char *buffer, int index)
{
    float value;
    std::memcpy(&value, buffer + singleSize * index, singleSize);
    return value;
}
