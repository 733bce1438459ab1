#include "commandchannel.h"

#include "extensionrecord.h"
#include "orvpluginapi.h"
#include "trackingprotocol.h"
#include "transferqueue.h"

#include <QWidget>

namespace {

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

CommandChannel::CommandChannel(TransferQueue &queue)
    : m_queue(queue)
{
    connect(&queue, &TransferQueue::transferred, this, &CommandChannel::relay);
}

QVariant CommandChannel::request(int kind, const QVariant &record)
{
    if (kind == ChannelRequest::Extension && record.canConvert<ExtensionUnit>())
        return transferToCamera(record);

    QVariant answer;
    Transfer transfer;
    transfer.result = QStringLiteral("ok");
    if (kind == ChannelRequest::Setting && record.canConvert<SettingData>()) {
        const QString name = record.value<SettingData>().name;
        answer = m_settings.value(name);
        transfer.request = QStringLiteral("Setting");
        transfer.direction = QStringLiteral("get");
        transfer.meaning = QStringLiteral("%1: %2").arg(
            name, answer.isValid() ? answer.toString() : QStringLiteral("no such setting"));
    } else if (kind == ChannelRequest::Camera && record.canConvert<CameraData>()) {
        transfer.request = QStringLiteral("Camera");
        transfer.direction = QStringLiteral("set");
        transfer.meaning = describeNotice(record.value<CameraData>());
    } else {
        transfer.request = QString::number(kind);
        transfer.meaning = QStringLiteral("refused: no such request with the record \"%1\"")
                               .arg(QString::fromLatin1(record.typeName()));
        transfer.result = QStringLiteral("not sent");
    }
    transfer.time = QDateTime::currentDateTime();
    Q_EMIT transferred(transfer);
    return answer;
}

QVariant CommandChannel::transferToCamera(const QVariant &record)
{
    const auto unit = record.value<ExtensionUnit>();
    const QByteArray bytes = payloadOf(unit);
    const QString refusal = TrackingProtocol::refusal(unit.write, unit.selector, bytes);
    if (!refusal.isEmpty()) {
        Transfer transfer;
        transfer.time = QDateTime::currentDateTime();
        transfer.direction = unit.write ? QStringLiteral("set") : QStringLiteral("get");
        transfer.request = QStringLiteral("Extension");
        transfer.selector = unit.selector;
        transfer.bytes = bytes;
        transfer.meaning = QStringLiteral("refused: ") + refusal;
        transfer.result = QStringLiteral("not sent");
        Q_EMIT transferred(transfer);
    } else if (unit.write) {
        m_queue.sendCommand(bytes);
        return record;
    } else {
        return QVariant::fromValue(extensionRecord(false, unit.selector, m_queue.readStatus()));
    }
    return QVariant::fromValue(extensionRecord(false, unit.selector, {}));
}

void CommandChannel::relay(Transfer transfer)
{
    if (transfer.direction == QLatin1String("set"))
        transfer.meaning = TrackingProtocol::describeCommand(transfer.bytes);
    else if (transfer.bytes.isEmpty() && transfer.isStatusRead())
        transfer.meaning = QStringLiteral("no answer");
    else if (transfer.isStatusRead())
        transfer.meaning = TrackingProtocol::describeStatus(transfer.bytes);
    Q_EMIT transferred(transfer);
}
