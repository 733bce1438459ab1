#include "commandchannel.h"

#include "simulatedcamera.h"

#include <QWidget>

#include <algorithm>

namespace {

/// Enough for the header, the length and the value of a command.
constexpr int shownBytes = 6;

QString describeNotice(const CameraData &notice)
{
    return QStringLiteral("notice from %1: %2, %3, %4, %5")
        .arg(notice.object ? notice.object->objectName() : QStringLiteral("no widget"),
             QVariant(notice.flag).toString())
        .arg(notice.param1)
        .arg(notice.param2)
        .arg(notice.param3);
}

} // namespace

QString Transfer::firstBytes() const
{
    return QString::fromLatin1(bytes.left(shownBytes).toHex(' ')).toUpper();
}

CommandChannel::CommandChannel(SimulatedCamera &camera)
    : m_camera(camera)
{
}

QVariant CommandChannel::request(int kind, const QVariant &record)
{
    Transfer transfer;
    transfer.time = QTime::currentTime();
    QVariant answer = answerTo(kind, record, transfer);
    Q_EMIT transferred(transfer);
    return answer;
}

QVariant CommandChannel::answerTo(int kind, const QVariant &record, Transfer &transfer) const
{
    if (kind == ChannelRequest::Setting && record.canConvert<SettingData>()) {
        const QString name = record.value<SettingData>().name;
        QVariant answer = m_settings.value(name);
        transfer.request = QStringLiteral("Setting");
        transfer.direction = QStringLiteral("get");
        transfer.meaning = QStringLiteral("%1: %2").arg(
            name, answer.isValid() ? answer.toString() : QStringLiteral("no such setting"));
        return answer;
    }
    if (kind == ChannelRequest::Extension && record.canConvert<ExtensionUnit>()) {
        transfer.request = QStringLiteral("Extension");
        return transferToCamera(record.value<ExtensionUnit>(), transfer);
    }
    if (kind == ChannelRequest::Camera && record.canConvert<CameraData>()) {
        transfer.request = QStringLiteral("Camera");
        transfer.direction = QStringLiteral("set");
        transfer.meaning = describeNotice(record.value<CameraData>());
    } else {
        transfer.request = QString::number(kind);
        transfer.meaning = QStringLiteral("refused: no such request with the record \"%1\"")
                               .arg(QString::fromLatin1(record.typeName()));
    }
    return {};
}

QVariant CommandChannel::transferToCamera(const ExtensionUnit &unit, Transfer &transfer) const
{
    const ExtensionUnit answer = m_camera.transfer(unit);
    const ExtensionUnit &carrier = unit.write ? unit : answer;
    transfer.direction = unit.write ? QStringLiteral("set") : QStringLiteral("get");
    transfer.selector = unit.selector;
    transfer.bytes =
        QByteArray(reinterpret_cast<const char *>(carrier.data),
                   static_cast<int>(qMin<quint64>(carrier.length, sizeof carrier.data)));

    const QString refusal = SimulatedCamera::refusal(unit);
    if (!refusal.isEmpty()) {
        transfer.meaning = QStringLiteral("refused: ") + refusal;
    } else if (unit.write) {
        transfer.meaning = SimulatedCamera::describeCommand(unit);
        if (answer.length == 0)
            transfer.meaning += QStringLiteral(" (no answer)");
    } else if (answer.length == 0) {
        transfer.meaning = QStringLiteral("no answer");
    } else {
        SimulatedCamera::Status status;
        std::copy_n(answer.data, status.size(), status.begin());
        transfer.meaning = SimulatedCamera::describeStatus(status);
    }
    return QVariant::fromValue(answer);
}
