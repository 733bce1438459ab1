#include "hostwindow.h"

#include "camerapanel.h"
#include "commandchannel.h"
#include "look.h"
#include "statusline.h"
#include "tracepanel.h"
#include "transferqueue.h"

#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

/// Sizes in pixels at 96 dots per inch.
constexpr int panelWidth = 374;
constexpr int windowHeight = 640;

} // namespace

HostWindow::HostWindow(TransferQueue &queue, CommandChannel &channel, SimulatedCamera *simulated)
    : m_panelContainer(new QWidget)
    , m_status(new StatusLine(queue))
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
    m_status->setFont(Look::font());
    layout->addWidget(m_status);
    resize(sizeHint().width(), qRound(windowHeight * scale));

    connect(&channel, &CommandChannel::transferred, this,
            [trace](const Transfer &transfer) { trace->trace().add(transfer); });
}
