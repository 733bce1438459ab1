#include "statusline.h"

#include "errortexts.h"
#include "transferqueue.h"
#include "transfertext.h"

#include <QPainter>
#include <QStringList>
#include <QStyle>

#include <chrono>

using namespace std::chrono_literals;

/// Shorter waits are not shown: the line would flicker at each press.
static constexpr auto waitingInterval = 500ms;

StatusLine::StatusLine(const TransferQueue &queue)
    : m_queue(queue)
{
    setObjectName("lb_condition");
    // Do not let a long sentence widen the window.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_waiting.setInterval(waitingInterval);
    connect(&m_waiting, &QTimer::timeout, this, [this] {
        m_showsWaiting = true;
        updateText();
    });
    connect(&queue, &TransferQueue::conditionChanged, this, &StatusLine::updateText);
    updateText();
}

void StatusLine::setNotice(const QString &notice)
{
    m_notice = notice;
    updateText();
}

void StatusLine::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), int(alignment()), palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()),
                          foregroundRole());
}

void StatusLine::updateText()
{
    if (m_queue.condition().waiting == 0) {
        m_waiting.stop();
        m_showsWaiting = false;
    } else if (!m_waiting.isActive()) {
        m_waiting.start();
    }
    const QString text = describe();
    setText(text);
    setToolTip(text);
}

QString StatusLine::describe() const
{
    const CameraCondition condition = m_queue.condition();
    QStringList sentences;
    if (!m_notice.isEmpty())
        sentences << m_notice;
    if (condition.readOnly)
        sentences << tr("Read-only: no commands are sent.");

    QString reason;
    switch (condition.state) {
    case CameraCondition::Opening:
        sentences << tr("Opening %1.").arg(m_queue.cameraName());
        break;
    case CameraCondition::Refused:
        if (condition.refusal.reason == CameraRefusal::Disconnected) {
            sentences << tr("The camera is disconnected. Changes that you make now will not be "
                            "sent.");
        } else {
            sentences << tr("The camera is plugged in again but cannot be used.");
            reason = refusalText(condition.refusal);
        }
        break;
    case CameraCondition::Connected:
        sentences << tr("The camera is connected.");
        break;
    case CameraCondition::Failing:
        sentences << tr("The camera is failing.");
        reason = tr("Reading control 8 failed: %1").arg(transferError(condition.error));
        break;
    }
    if (m_showsWaiting) {
        const qint64 seconds = condition.running.isValid() ? condition.running.elapsed() / 1000 : 0;
        const QString commands = condition.waiting == 1
                                     ? tr("1 command waiting")
                                     : tr("%1 commands waiting").arg(condition.waiting);
        sentences << (seconds == 0
                          ? tr("%1.").arg(commands)
                          : tr("%1, transfer running for %2 s.").arg(commands).arg(seconds));
    }
    if (!reason.isEmpty())
        sentences << reason;
    for (const auto &[field, command] : condition.failedCommands) {
        sentences << tr("%1: %2 was not accepted: %3")
                         .arg(inWindowLanguage(TrackingProtocol::fieldName(field)),
                              inWindowLanguage(TrackingProtocol::valueName(field, command.value)),
                              transferError(command.error));
    }
    return sentences.join(' ');
}
