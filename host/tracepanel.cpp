#include "tracepanel.h"

#include "look.h"
#include "transfer.h"
#include "transfertext.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QShortcut>
#include <QStaticText>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int transferRole = TracePanel::ColoredBytes + 1; ///< in the column Time

// Both have a contrast of at least 4.5 to rows of either colour, and to selected ones.
constexpr const char *changedColor = "#FFC857";
constexpr QRgb failedColor = 0xFFFFB3AB;

/// Keeps the colour of failed rows when they are selected, and paints bytes with their colours.
class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        if (index.data(Qt::ForegroundRole).isValid())
            cell.palette.setColor(QPalette::HighlightedText, failedColor);
        QStaticText bytes(index.data(TracePanel::ColoredBytes).toString());
        if (!bytes.text().isEmpty())
            cell.text.clear();
        const QStyle *const style = option.widget->style();
        style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, option.widget);
        bytes.prepare({}, cell.font);
        QRect rect({}, bytes.size().toSize());
        rect.moveCenter(cell.rect.center());
        rect.moveLeft(cell.rect.left() + style->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1);
        painter->save();
        painter->setFont(cell.font);
        painter->setPen(cell.palette.color(QPalette::Text));
        painter->drawStaticText(rect.topLeft(), bytes);
        painter->restore();
    }
};

} // namespace

TracePanel::TracePanel(int maximumRows)
    : QGroupBox(tr("Transfers"))
    , m_maximumRows(maximumRows)
    , m_filter(new QLineEdit)
    , m_table(new QTableWidget(0, Count))
    , m_noMatch(new QLabel)
{
    setFont(Look::font());
    m_byteFont.setStyleHint(QFont::Monospace);
    m_noMatch->setAlignment(Qt::AlignCenter);
    m_noMatch->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    m_noMatch->hide();
    auto *tools = new QHBoxLayout;
    addTools(*tools);
    auto *layout = new QVBoxLayout(this);
    const int margin = fontMetrics().averageCharWidth();
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addLayout(tools);
    layout->addWidget(m_table);
    layout->addWidget(m_noMatch);
    setUpTable();
}

void TracePanel::addTools(QHBoxLayout &tools)
{
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setClearButtonEnabled(true);
    connect(m_filter, &QLineEdit::textChanged, this, &TracePanel::filterRows);
    auto *copy = new QPushButton(tr("Copy"));
    copy->setToolTip(
        tr("Copy the selected rows. Without a selection, copy all rows that are shown"));
    connect(copy, &QPushButton::clicked, this, &TracePanel::copy);
    auto *save = new QPushButton(tr("Save..."));
    save->setToolTip(tr("Save the rows that are shown, one JSON object per line"));
    connect(save, &QPushButton::clicked, this, &TracePanel::save);
    tools.addWidget(m_filter, 1);
    tools.addWidget(copy);
    tools.addWidget(save);
}

void TracePanel::setUpTable()
{
    m_table->setHorizontalHeaderLabels({tr("Time"), tr("ms"), tr("Request"), tr("Meaning"),
                                        tr("Times"), tr("Result"), tr("First bytes")});
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setAlternatingRowColors(true);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    m_table->setTabKeyNavigation(false);
    m_table->setItemDelegate(new RowDelegate(m_table));
    // The table itself would copy a single cell.
    const auto *const copyKey =
        new QShortcut(QKeySequence::Copy, m_table, nullptr, nullptr, Qt::WidgetShortcut);
    connect(copyKey, &QShortcut::activated, this, &TracePanel::copy);

    QHeaderView *const header = m_table->horizontalHeader();
    header->setFont(Look::font());
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setHighlightSections(false);
    // The widest text that each column usually shows.
    appendRow({"00:00:00.000", "5000", inWindowLanguage("get Extension 8"),
               inWindowLanguage("tracking on, type Basic, mode Standard, composition off"), "100",
               "ETIMEDOUT", "FF FF FF FF FF FF"});
    m_table->resizeColumnsToContents();
    m_table->removeRow(0);
    header->setSectionResizeMode(Meaning, QHeaderView::Stretch);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
}

void TracePanel::add(const Transfer &transfer)
{
    const bool unsent = transfer.outcome == Transfer::NotSent;
    int &last = unsent ? m_lastUnsent : m_lastRead;
    if (transfer.isStatusRead() && last >= 0) {
        const Transfer previous = transferIn(last);
        if (transfer.bytes == previous.bytes && transfer.outcome == previous.outcome &&
            transfer.error == previous.error) {
            QTableWidgetItem *const times = m_table->item(last, Times);
            times->setText(QString::number(times->text().toInt() + 1));
            return;
        }
    }
    if (m_table->rowCount() == m_maximumRows) {
        m_table->removeRow(0);
        m_lastRead = std::max(m_lastRead - 1, -1);
        m_lastUnsent = std::max(m_lastUnsent - 1, -1);
    }
    // Follow new rows, unless the user has scrolled up.
    const QScrollBar *const bar = m_table->verticalScrollBar();
    const bool follow = bar->value() == bar->maximum();
    const int row =
        appendRow({transfer.time.toString("HH:mm:ss.zzz"), QString::number(transfer.duration),
                   inWindowLanguage(exchangeText(transfer)), inWindowLanguage(transfer.meaning),
                   "1", inWindowLanguage(resultText(transfer)), firstBytes(transfer)});
    m_table->item(row, Time)->setData(transferRole, QVariant::fromValue(transfer));
    m_table->item(row, Meaning)->setToolTip(m_table->item(row, Meaning)->text());
    m_table->item(row, Bytes)->setData(ColoredBytes, coloredBytes(transfer));
    m_table->item(row, Bytes)->setToolTip(QString(transfer.bytes.toHex(' ')).toUpper());
    for (int column = 0; column < Count && transfer.outcome == Transfer::Failed; ++column)
        m_table->item(row, column)->setForeground(QColor(failedColor));
    filterRow(row);
    showMatches();
    if (follow)
        m_table->scrollToBottom();
    if (transfer.isStatusRead()) {
        last = row;
        if (!unsent)
            m_lastUnsent = -1;
    } else if (transfer.selector != 0 || transfer.direction == Transfer::Event) {
        m_lastRead = m_lastUnsent = -1;
    }
}

int TracePanel::appendRow(const QStringList &texts)
{
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    for (int column = 0; column < Count; ++column)
        m_table->setItem(row, column, new QTableWidgetItem(texts.at(column)));
    m_table->item(row, Bytes)->setFont(m_byteFont);
    return row;
}

QString TracePanel::coloredBytes(const Transfer &transfer)
{
    if (transfer.bytes.isEmpty())
        return {};
    QByteArray kind = QByteArray::number(transfer.direction);
    if (!transfer.isStatusRead()) // Compare a command with the last one for the same setting.
        kind += transfer.bytes.mid(TrackingProtocol::commandOffset, 1);
    const QByteArray before = m_lastOfKind.value(kind, transfer.bytes);
    m_lastOfKind[kind] = transfer.bytes;
    QStringList words = firstBytes(transfer).split(' ');
    for (int i = 0; i < words.size(); ++i) {
        if (before.mid(i, 1) != transfer.bytes.mid(i, 1))
            words[i] = QString("<font color=%1>%2</font>").arg(changedColor, words[i]);
    }
    return words.join(QChar::Nbsp);
}

Transfer TracePanel::transferIn(int row) const
{
    return m_table->item(row, Time)->data(transferRole).value<Transfer>();
}

QString TracePanel::textOf(int row) const
{
    QStringList cells;
    for (int column = 0; column < Count; ++column)
        cells += m_table->item(row, column)->text();
    return cells.join('\t');
}

void TracePanel::filterRow(int row)
{
    const bool matches = textOf(row).contains(m_filter->text(), Qt::CaseInsensitive);
    m_table->setRowHidden(row, !matches);
}

void TracePanel::filterRows()
{
    // Otherwise hiding each row would compute the positions of all of them.
    m_table->verticalHeader()->setUpdatesEnabled(false);
    for (int row = 0; row < m_table->rowCount(); ++row)
        filterRow(row);
    m_table->verticalHeader()->setUpdatesEnabled(true);
    showMatches();
}

void TracePanel::showMatches()
{
    const bool none = !m_filter->text().isEmpty() && m_table->verticalHeader()->length() == 0;
    m_table->setVisible(!none);
    m_noMatch->setVisible(none);
    m_noMatch->setText(tr("No row contains \"%1\"").arg(m_filter->text()));
}

void TracePanel::copy() const
{
    QStringList shown;
    QStringList selected;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->isRowHidden(row))
            continue;
        shown += textOf(row);
        if (m_table->selectionModel()->isRowSelected(row, {}))
            selected += shown.last();
    }
    QApplication::clipboard()->setText((selected.isEmpty() ? shown : selected).join('\n'));
}

void TracePanel::save()
{
    auto *dialog = new QFileDialog(this, tr("Save the rows that are shown"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFont(Look::font());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix("jsonl");
    dialog->selectFile("transfers.jsonl");
    connect(dialog, &QFileDialog::fileSelected, this, &TracePanel::write);
    dialog->open();
}

void TracePanel::write(const QString &path)
{
    QSaveFile file(path);
    bool written = file.open(QIODevice::WriteOnly);
    for (int row = 0; written && row < m_table->rowCount(); ++row) {
        const int times = m_table->item(row, Times)->text().toInt();
        if (!m_table->isRowHidden(row))
            written = file.write(toJsonLine(transferIn(row), times)) > 0;
    }
    if (written && file.commit())
        return;
    auto *box = new QMessageBox(QMessageBox::Warning, tr("Camera control"),
                                tr("Cannot write \"%1\": %2.").arg(path, file.errorString()),
                                QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setFont(Look::font());
    box->open();
}
