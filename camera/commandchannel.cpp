#include "commandchannel.h"

#include "extensionrecord.h"
#include "orvpluginapi.h"
#include "trackingprotocol.h"
#include "transferqueue.h"

#include <QWidget>

namespace {

QString describeNotice(const CameraData &notice)
{
    return QString("notice from %1: %2, %3, %4, %5")
        .arg(notice.object ? notice.object->objectName() : "no widget",
             QVariant(notice.flag).toString())
        .arg(notice.param1)
        .arg(notice.param2)
        .arg(notice.param3);
}

} // namespace

CommandChannel::CommandChannel(TransferQueue &queue, int language)
    : m_queue(queue)
    , m_language(language)
{
    connect(&queue, &TransferQueue::transferred, this, &CommandChannel::transferred);
}

QVariant CommandChannel::request(int kind, const QVariant &record)
{
    const bool isKnown = isRequest(kind, record);
    if (isKnown && kind == ChannelRequest::Extension)
        return transferToCamera(record);

    QVariant answer;
    Transfer transfer;
    transfer.outcome = Transfer::Succeeded;
    if (isKnown && kind == ChannelRequest::Setting) {
        const QString name = record.value<SettingData>().name;
        answer = name == "language" ? QVariant(m_language) : QVariant();
        transfer.direction = Transfer::Get;
        transfer.meaning = name + ": " + (answer.isValid() ? answer.toString() : "no such setting");
    } else if (isKnown) {
        transfer.direction = Transfer::Set;
        transfer.meaning = describeNotice(record.value<CameraData>());
    } else {
        transfer.meaning =
            QString("refused: no such request with the record \"%1\"").arg(record.typeName());
        transfer.outcome = Transfer::NotSent;
    }
    transfer.request = kind;
    Q_EMIT transferred(transfer);
    return answer;
}

QVariant CommandChannel::transferToCamera(const QVariant &record)
{
    const auto unit = record.value<ExtensionUnit>();
    const QByteArray bytes = payloadOf(unit);
    const QString refusal = TrackingProtocol::refusal(unit.write, unit.selector, bytes);
    QByteArray answer;
    if (!refusal.isEmpty()) {
        Q_EMIT transferred({unit.write ? Transfer::Set : Transfer::Get, ChannelRequest::Extension,
                            unit.selector, bytes, "refused: " + refusal});
    } else if (unit.write) {
        m_queue.sendCommand(bytes);
        return record;
    } else {
        answer = m_queue.readStatus();
    }
    return QVariant::fromValue(extensionRecord(false, unit.selector, answer));
}
