#include "hostwindow.h"

#include "camerapanel.h"
#include "commandchannel.h"
#include "errortexts.h"
#include "look.h"
#include "tracepanel.h"
#include "transferqueue.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cerrno>

namespace {

/// Sizes in pixels at 96 dots per inch.
constexpr int panelWidth = 374;
constexpr int windowHeight = 640;

QString describe(const CameraCondition &condition)
{
    if (condition.read == CameraCondition::unknown)
        return "The camera has not answered yet.";
    if (condition.read == ENODEV)
        return "The camera is disconnected. Changes that you make now will not be sent.";
    if (condition.read != 0)
        return "The camera is failing. " + transferError("Reading control 8", condition.read);
    if (condition.write != 0)
        return "The camera is connected. " + transferError("Setting control 7", condition.write);
    return "The camera is connected.";
}

} // namespace

HostWindow::HostWindow(TransferQueue &queue, CommandChannel &channel, SimulatedCamera *simulated)
    : m_queue(queue)
    , m_panelContainer(new QWidget)
    , m_condition(new QLabel)
{
    setWindowTitle("Camera control");
    const double scale = std::max(1.0, logicalDpiX() / 96.0);
    const int margin = qRound(12 * scale);

    auto *panelLayout = new QVBoxLayout(m_panelContainer);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->addStretch();
    m_panelContainer->setFixedWidth(qRound(panelWidth * scale));
    auto *reset = new QPushButton("Reset to defaults");
    reset->setObjectName("pb_reset");
    connect(reset, &QPushButton::clicked, this, &HostWindow::resetRequested);
    auto *left = new QVBoxLayout;
    left->addWidget(m_panelContainer, 1);
    left->addWidget(reset, 0, Qt::AlignHCenter);

    auto *right = new QWidget;
    right->setFont(Look::font());
    auto *rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->setSpacing(margin);
    if (simulated)
        rightLayout->addWidget(new CameraPanel(*simulated));
    auto *trace = new TracePanel;
    rightLayout->addWidget(trace, 1);
    reset->setFont(Look::font());

    auto *columns = new QHBoxLayout;
    columns->setSpacing(margin);
    columns->addLayout(left);
    columns->addWidget(right, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addLayout(columns, 1);
    m_condition->setObjectName("lb_condition");
    m_condition->setFont(Look::font());
    // Do not let a long sentence widen the window.
    m_condition->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    layout->addWidget(m_condition);
    resize(sizeHint().width(), qRound(windowHeight * scale));

    connect(&channel, &CommandChannel::transferred, trace, &TracePanel::add);
    connect(&queue, &TransferQueue::conditionChanged, this, &HostWindow::showCondition);
    showCondition();
}

void HostWindow::showCondition()
{
    const QString sentence = describe(m_queue.condition());
    m_condition->setText(sentence);
    m_condition->setToolTip(sentence);
}
