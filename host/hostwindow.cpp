#include "hostwindow.h"

#include "commandchannel.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyleFactory>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

/// The panel's width at 96 dots per inch, where the other sizes are given too.
constexpr int panelWidth = 374;
constexpr int windowHeight = 640;
constexpr int headingPoints = 12;
constexpr int textPoints = 9;
constexpr int maximumRows = 1000;

enum Column { Time, Direction, Request, Selector, Meaning, Bytes, ColumnCount };

constexpr struct
{
    const char *title;
    const char *widest; ///< what the column must have room for
} columns[ColumnCount] = {
    {"Time", "00:00:00.000"},
    {"Direction", "set"},
    {"Request", "Extension"},
    {"Selector", "0"},
    {"Meaning", "tracking off, type Basic, mode Standard, composition Half Body"},
    {"First bytes", "FF FF FF FF FF FF"},
};

QFont textFont(int points = textPoints)
{
    QFont font = QApplication::font();
    font.setPointSize(points);
    return font;
}

QFont byteFont()
{
    QFont font(QStringLiteral("monospace"), textPoints);
    font.setStyleHint(QFont::Monospace);
    return font;
}

} // namespace

HostWindow::HostWindow(SimulatedCamera &camera, CommandChannel &channel)
    : m_camera(camera)
    , m_panelContainer(new QWidget)
    , m_transfers(new QTableWidget(0, ColumnCount))
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
    auto *rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->setSpacing(margin);
    rightLayout->addWidget(createCameraGroup());
    rightLayout->addWidget(createTransferGroup(), 1);
    reset->setFont(textFont());
    right->setFont(textFont());

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin);
    layout->addLayout(left);
    layout->addWidget(right, 1);
    resize(sizeHint().width(), qRound(windowHeight * scale));
    // Wide enough for every text at first; the user may have it narrower.
    m_transfers->setMinimumWidth(0);

    connect(&camera, &SimulatedCamera::statusChanged, this, &HostWindow::showStatus);
    connect(&channel, &CommandChannel::transferred, this, &HostWindow::addTransfer);
    showStatus();
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
}

QGroupBox *HostWindow::createCameraGroup()
{
    auto *group = new QGroupBox(QStringLiteral("Simulated camera"));
    auto *grid = new QGridLayout(group);
    const auto addColumn = [grid](const QString &title, QWidget *widget) {
        const int column = grid->count() / 2;
        grid->addWidget(new QLabel(title), 0, column);
        grid->addWidget(widget, 1, column);
        grid->setColumnStretch(column, 1);
    };

    for (const auto field : SimulatedCamera::settingFields) {
        auto *box = new QComboBox;
        m_values.at(field) = box;
        connect(box, QOverload<int>::of(&QComboBox::activated), this, [this, box, field] {
            m_camera.setValue(field, static_cast<quint8>(box->currentData().toInt()));
        });
        addColumn(SimulatedCamera::fieldName(field), box);
    }

    auto *delay = new QSpinBox;
    delay->setRange(0, 10000);
    delay->setSingleStep(50);
    delay->setSuffix(QStringLiteral(" ms"));
    delay->setValue(static_cast<int>(m_camera.delay().count()));
    connect(delay, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this](int value) { m_camera.setDelay(std::chrono::milliseconds(value)); });
    addColumn(QStringLiteral("Delay"), delay);

    auto *answers = new QCheckBox(QStringLiteral("Answers"));
    answers->setChecked(m_camera.isAnswering());
    connect(answers, &QCheckBox::toggled, this, [this](bool on) { m_camera.setAnswering(on); });
    addColumn({}, answers);
    return group;
}

QGroupBox *HostWindow::createTransferGroup()
{
    m_transfers->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_transfers->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_transfers->setAlternatingRowColors(true);
    m_transfers->setShowGrid(false);
    m_transfers->setWordWrap(false);
    m_transfers->verticalHeader()->hide();

    QHeaderView *const header = m_transfers->horizontalHeader();
    header->setFont(textFont());
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setHighlightSections(false);
    const QFontMetrics proportional(textFont());
    const QFontMetrics fixed(byteFont());
    const int padding = proportional.averageCharWidth() * 2;
    int width = m_transfers->verticalScrollBar()->sizeHint().width() + padding;
    for (int column = 0; column < ColumnCount; ++column) {
        const QString title = QString::fromLatin1(columns[column].title);
        const QString widest = QString::fromLatin1(columns[column].widest);
        const QFontMetrics &metrics = column == Bytes ? fixed : proportional;
        m_transfers->setHorizontalHeaderItem(column, new QTableWidgetItem(title));
        m_transfers->setColumnWidth(column,
                                    padding + std::max(proportional.horizontalAdvance(title),
                                                       metrics.horizontalAdvance(widest)));
        width += m_transfers->columnWidth(column);
    }
    m_transfers->setMinimumWidth(width);
    header->setSectionResizeMode(Meaning, QHeaderView::Stretch);
    m_transfers->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_transfers->verticalHeader()->setDefaultSectionSize(proportional.height() + padding / 2);

    auto *group = new QGroupBox(QStringLiteral("Transfers"));
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(m_transfers);
    return group;
}

void HostWindow::showStatus()
{
    for (const auto field : SimulatedCamera::settingFields) {
        const quint8 current = m_camera.status().at(field);
        QVector<quint8> offered = SimulatedCamera::knownValues(field);
        // A value without a meaning is on offer only while the camera has it.
        if (!offered.contains(current))
            offered += current;
        QComboBox *const box = m_values.at(field);
        box->clear();
        for (const quint8 value : qAsConst(offered))
            box->addItem(SimulatedCamera::valueName(field, value), value);
        box->setCurrentIndex(offered.indexOf(current));
    }
}

void HostWindow::addTransfer(const Transfer &transfer)
{
    const QScrollBar *const bar = m_transfers->verticalScrollBar();
    const bool atBottom = bar->value() == bar->maximum();

    if (m_transfers->rowCount() == maximumRows)
        m_transfers->removeRow(0);
    const int row = m_transfers->rowCount();
    m_transfers->insertRow(row);
    const auto setText = [&](Column column, const QString &text) {
        auto *item = new QTableWidgetItem(text);
        item->setToolTip(text);
        if (column == Bytes)
            item->setFont(byteFont());
        m_transfers->setItem(row, column, item);
    };
    setText(Time, transfer.time.toString(QStringLiteral("HH:mm:ss.zzz")));
    setText(Direction, transfer.direction);
    setText(Request, transfer.request);
    setText(Selector, transfer.selector ? QString::number(transfer.selector) : QString());
    setText(Meaning, transfer.meaning);
    setText(Bytes, transfer.firstBytes());

    if (atBottom)
        m_transfers->scrollToBottom();
}
