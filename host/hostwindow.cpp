#include "hostwindow.h"

#include "camerapanel.h"
#include "commandchannel.h"
#include "errornames.h"
#include "tracepanel.h"
#include "transferqueue.h"

#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QStyleFactory>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace {

/// The panel's width at 96 dots per inch, where the other sizes are given too.
constexpr int panelWidth = 374;
constexpr int windowHeight = 640;
constexpr int headingPoints = 12;
constexpr int textPoints = 9;
/// How long a sentence stands in for the camera's condition.
constexpr std::chrono::seconds noticeTime(5);

QFont textFont(int points = textPoints)
{
    QFont font = QApplication::font();
    font.setPointSize(points);
    return font;
}

QString describe(const CameraCondition &condition)
{
    if (condition.read == CameraCondition::unknown)
        return QStringLiteral("The camera has not answered yet.");
    if (condition.read == ENODEV)
        return QStringLiteral("The camera is disconnected. What you choose now is not sent later.");
    if (condition.read != 0) {
        return QStringLiteral("The camera is failing. ") +
               transferError(QStringLiteral("Reading control 8"), condition.read);
    }
    const QString connected = QStringLiteral("The camera is connected.");
    return condition.write == 0
               ? connected
               : connected + QLatin1Char(' ') +
                     transferError(QStringLiteral("Setting control 7"), condition.write);
}

} // namespace

HostWindow::HostWindow(TransferQueue &queue, CommandChannel &channel, SimulatedCamera *simulated)
    : m_queue(queue)
    , m_panelContainer(new QWidget)
    , m_condition(new QLabel)
{
    setWindowTitle(QStringLiteral("Camera control"));
    const double scale = std::max(1.0, logicalDpiX() / 96.0);
    const int margin = qRound(12 * scale);

    auto *panelLayout = new QVBoxLayout(m_panelContainer);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->addStretch();
    m_panelContainer->setFixedWidth(qRound(panelWidth * scale));
    auto *reset = new QPushButton(QStringLiteral("Reset to defaults"));
    reset->setObjectName(QStringLiteral("pb_reset"));
    connect(reset, &QPushButton::clicked, this, &HostWindow::resetRequested);
    auto *left = new QVBoxLayout;
    left->addWidget(m_panelContainer, 1);
    left->addWidget(reset, 0, Qt::AlignHCenter);

    auto *right = new QWidget;
    right->setFont(textFont());
    auto *rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->setSpacing(margin);
    if (simulated)
        rightLayout->addWidget(new CameraPanel(*simulated));
    auto *trace = new TracePanel;
    rightLayout->addWidget(trace, 1);
    reset->setFont(textFont());

    auto *columns = new QHBoxLayout;
    columns->setSpacing(margin);
    columns->addLayout(left);
    columns->addWidget(right, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addLayout(columns, 1);
    m_condition->setObjectName(QStringLiteral("lb_condition"));
    m_condition->setFont(textFont());
    // A long sentence does not widen the window.
    m_condition->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    layout->addWidget(m_condition);
    resize(sizeHint().width(), qRound(windowHeight * scale));

    connect(&channel, &CommandChannel::transferred, this,
            [trace](const Transfer &transfer) { trace->trace().add(transfer); });
    connect(trace, &TracePanel::noticed, this, [this](const QString &sentence) {
        showSentence(sentence);
        QTimer::singleShot(noticeTime, this, &HostWindow::showCondition);
    });
    connect(&queue, &TransferQueue::conditionChanged, this, &HostWindow::showCondition);
    showCondition();
}

void HostWindow::applyDarkLook()
{
    const QColor text(0xE6E8EC);
    const QColor dim(0x6B7079);
    QPalette dark(QColor(0x282B30), QColor(0x1B1D21));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::HighlightedText}) {
        dark.setColor(role, text);
        dark.setColor(QPalette::Disabled, role, dim);
    }
    dark.setColor(QPalette::Base, QColor(0x25282D));
    dark.setColor(QPalette::AlternateBase, QColor(0x202327));
    dark.setColor(QPalette::ToolTipBase, QColor(0x282B30));
    dark.setColor(QPalette::Highlight, QColor(0x3A3F46));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(dark);
    // The panel's title has no size of its own.
    QApplication::setFont(textFont(headingPoints));
    QToolTip::setFont(textFont());
}

void HostWindow::showCondition()
{
    showSentence(describe(m_queue.condition()));
}

void HostWindow::showSentence(const QString &sentence)
{
    m_condition->setText(sentence);
    m_condition->setToolTip(sentence);
}
