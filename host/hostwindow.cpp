#include "hostwindow.h"

#include "camerapanel.h"
#include "cameraview.h"
#include "commandchannel.h"
#include "look.h"
#include "statusline.h"
#include "tracepanel.h"
#include "transferqueue.h"

#include <QChildEvent>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

/// Sizes in pixels at 96 dots per inch.
constexpr int panelWidth = 374;
constexpr int windowWidth = 1270;
constexpr int windowHeight = 660;

QWidget *makeRightColumn(SimulatedCamera *simulated, TracePanel *trace, int margin)
{
    auto *right = new QSplitter(Qt::Vertical);
    right->setFont(Look::font());
    right->setHandleWidth(margin);
    if (simulated) {
        auto *camera = new QWidget;
        auto *cameraLayout = new QHBoxLayout(camera);
        cameraLayout->setContentsMargins(0, 0, 0, 0);
        cameraLayout->addWidget(new CameraView(*simulated));
        cameraLayout->addWidget(new CameraPanel(*simulated), 1);
        right->addWidget(camera);
    }
    right->addWidget(trace);
    right->setStretchFactor(right->indexOf(trace), 1);
    right->setCollapsible(right->indexOf(trace), false);
    return right;
}

} // namespace

HostWindow::HostWindow(TransferQueue &queue, CommandChannel &channel, SimulatedCamera *simulated)
    : m_panelContainer(new QWidget)
    , m_reset(new QPushButton(tr("Reset to defaults")))
    , m_status(new StatusLine(queue))
{
    setWindowTitle(tr("Camera control"));
    const double scale = std::max(1.0, logicalDpiX() / 96.0);
    const int margin = qRound(10 * scale);

    QWidget *const left = makeLeftColumn(scale);
    auto *trace = new TracePanel;
    auto *columns = new QSplitter(Qt::Horizontal);
    columns->setHandleWidth(margin);
    columns->setChildrenCollapsible(false);
    columns->addWidget(left);
    columns->addWidget(makeRightColumn(simulated, trace, margin));
    columns->setStretchFactor(1, 1);
    columns->setSizes({left->minimumSizeHint().width(), qRound(windowWidth * scale)});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(columns, 1);
    m_status->setFont(Look::font());
    auto *readAgain = new QPushButton(tr("Read again"));
    readAgain->setFont(Look::font());
    readAgain->setToolTip(tr("Show the camera's settings in a new panel"));
    connect(readAgain, &QPushButton::clicked, this, &HostWindow::readAgainRequested);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_status, 1);
    bottom->addWidget(readAgain);
    layout->addLayout(bottom);
    QSize size(qRound(windowWidth * scale), qRound(windowHeight * scale));
    // Leave room for the title bar. The screen of the platform "offscreen" limits nobody.
    if (QGuiApplication::platformName() != "offscreen") {
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        size = size.boundedTo(screen - QSize(margin, 3 * margin));
    }
    resize(size);

    connect(&channel, &CommandChannel::transferred, trace, &TracePanel::add);
}

QWidget *HostWindow::makeLeftColumn(double scale)
{
    auto *panelLayout = new QVBoxLayout(m_panelContainer);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->addStretch();
    m_panelContainer->setMinimumWidth(qRound(panelWidth * scale));
    m_panelContainer->installEventFilter(this);
    auto *panelArea = new QScrollArea;
    panelArea->setWidget(m_panelContainer);
    panelArea->setWidgetResizable(true);
    panelArea->setFrameShape(QFrame::NoFrame);
    panelArea->setFocusPolicy(Qt::NoFocus);
    panelArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    panelArea->setMinimumWidth(m_panelContainer->minimumWidth() +
                               panelArea->verticalScrollBar()->sizeHint().width());
    m_reset->setObjectName("pb_reset");
    m_reset->setFont(Look::font());
    connect(m_reset, &QPushButton::clicked, this, &HostWindow::resetRequested);
    auto *left = new QWidget;
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->addWidget(panelArea, 1);
    leftLayout->addWidget(m_reset, 0, Qt::AlignHCenter);
    return left;
}

bool HostWindow::eventFilter(QObject *watched, QEvent *event)
{
    // Sent when the panel is about to be shown. It is complete by then.
    if (event->type() == QEvent::ChildPolished)
        putPanelFirst();
    return QWidget::eventFilter(watched, event);
}

// Qt puts the controls of a new panel at the end of the tab order. Moves the reset button and
// everything up to the panel behind it.
void HostWindow::putPanelFirst()
{
    QWidget *last = nullptr;
    QWidgetList others;
    for (QWidget *w = m_reset; w != this; w = w->nextInFocusChain()) {
        // setTabOrder() ignores the rest.
        if (w->focusPolicy() == Qt::NoFocus)
            continue;
        if (m_panelContainer->isAncestorOf(w))
            last = w;
        else
            others.prepend(w);
    }
    if (!last)
        return;
    // Backwards, because setTabOrder() does nothing if one follows the other in the ring.
    for (QWidget *const other : qAsConst(others))
        setTabOrder(last, other);
    // If the window was active before it had a panel, Qt has given the focus to the button.
    if (m_reset->hasFocus() && !testAttribute(Qt::WA_KeyboardFocusChange))
        setFocus();
}
