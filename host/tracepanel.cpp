#include "tracepanel.h"

#include "look.h"
#include "transfertext.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QRgb changedColor = 0xFFFF7A94;

/// The widest text that each column usually shows.
constexpr const char *widest[TraceModel::Count] = {
    "00:00:00.000",
    "5000 ms",
    "event",
    "Extension",
    "0",
    "tracking off, type Basic, mode Standard, composition Half Body",
    "superseded",
    "FF FF FF FF FF FF"};

QFont byteFont()
{
    QFont font("monospace", Look::textPoints);
    font.setStyleHint(QFont::Monospace);
    return font;
}

/// Paints bytes and highlights those that changed.
class ByteDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        QStyleOptionViewItem empty = option;
        initStyleOption(&empty, index);
        const QString text = empty.text;
        empty.text.clear();
        const QStyle *const style = option.widget->style();
        style->drawControl(QStyle::CE_ItemViewItem, &empty, painter, option.widget);

        const QByteArray changed = index.data(TraceModel::ChangedBytes).toByteArray();
        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1;
        QRect rest = option.rect.adjusted(margin, 0, 0, 0);
        painter->save();
        painter->setFont(byteFont());
        int byte = 0;
        const QStringList words = text.split(' ');
        for (const QString &word : words) {
            const bool mark = byte < changed.size() && changed.at(byte) != 0;
            painter->setPen(mark ? QColor(changedColor) : option.palette.color(QPalette::Text));
            painter->drawText(rest, Qt::AlignVCenter, word);
            rest.translate(painter->fontMetrics().horizontalAdvance(word + ' '), 0);
            ++byte;
        }
        painter->restore();
    }
};

} // namespace

TracePanel::TracePanel()
    : QGroupBox("Transfers")
    , m_table(new QTableView)
{
    m_rows.setSourceModel(&m_trace);
    m_rows.setFilterKeyColumn(-1); // all
    m_rows.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_table->setModel(&m_rows);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setAlternatingRowColors(true);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->setItemDelegateForColumn(TraceModel::Bytes, new ByteDelegate(m_table));
    layOutColumns();

    auto *tools = new QHBoxLayout;
    addTools(*tools);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(tools);
    layout->addWidget(m_table);

    // Follow new rows, unless the user has scrolled up.
    connect(&m_rows, &QAbstractItemModel::rowsAboutToBeInserted, this, [this] {
        const QScrollBar *const bar = m_table->verticalScrollBar();
        m_follows = bar->value() == bar->maximum();
    });
    connect(&m_rows, &QAbstractItemModel::rowsInserted, this, [this] {
        if (m_follows)
            m_table->scrollToBottom();
    });
}

QSize TracePanel::sizeHint() const
{
    return QGroupBox::sizeHint().expandedTo({m_wantedWidth, 0});
}

void TracePanel::addTools(QHBoxLayout &tools)
{
    auto *filter = new QLineEdit;
    filter->setPlaceholderText("Filter");
    filter->setClearButtonEnabled(true);
    connect(filter, &QLineEdit::textChanged, &m_rows, &QSortFilterProxyModel::setFilterFixedString);
    auto *copy = new QPushButton("Copy");
    copy->setToolTip("Copy the selected rows. Without a selection, copy all rows that are shown");
    connect(copy, &QPushButton::clicked, this, &TracePanel::copy);
    auto *save = new QPushButton("Save...");
    save->setToolTip("Save the rows that are shown, one JSON object per line");
    connect(save, &QPushButton::clicked, this, &TracePanel::save);
    tools.addWidget(filter, 1);
    tools.addWidget(copy);
    tools.addWidget(save);
}

void TracePanel::layOutColumns()
{
    QHeaderView *const header = m_table->horizontalHeader();
    header->setFont(Look::font());
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setHighlightSections(false);
    const QFontMetrics proportional(Look::font());
    const QFontMetrics fixed(byteFont());
    const int padding = proportional.averageCharWidth() * 2;
    // The scroll bar, and the margins and frames around the table.
    m_wantedWidth = m_table->verticalScrollBar()->sizeHint().width() + 5 * padding;
    for (int column = 0; column < TraceModel::Count; ++column) {
        const QString title = m_trace.headerData(column, Qt::Horizontal).toString();
        const QFontMetrics &metrics = column == TraceModel::Bytes ? fixed : proportional;
        const int width = padding + std::max(proportional.horizontalAdvance(title),
                                             metrics.horizontalAdvance(widest[column]));
        m_table->setColumnWidth(column, width);
        m_wantedWidth += width;
    }
    header->setSectionResizeMode(TraceModel::Meaning, QHeaderView::Stretch);
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(proportional.height() + padding / 2);
}

void TracePanel::copy() const
{
    QStringList lines;
    const bool selected = m_table->selectionModel()->hasSelection();
    for (int row = 0; row < m_rows.rowCount(); ++row) {
        if (selected && !m_table->selectionModel()->isRowSelected(row, {}))
            continue;
        QStringList cells;
        for (int column = 0; column < TraceModel::Count; ++column)
            cells += m_rows.index(row, column).data().toString();
        lines += cells.join('\t');
    }
    QApplication::clipboard()->setText(lines.join('\n'));
}

void TracePanel::save()
{
    auto *dialog = new QFileDialog(this, "Save the rows that are shown");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix("jsonl");
    connect(dialog, &QFileDialog::fileSelected, this, &TracePanel::write);
    dialog->open();
}

void TracePanel::write(const QString &path)
{
    QSaveFile file(path);
    bool written = file.open(QIODevice::WriteOnly);
    for (int row = 0; written && row < m_rows.rowCount(); ++row) {
        const int source = m_rows.mapToSource(m_rows.index(row, 0)).row();
        written = file.write(toJsonLine(m_trace.transfer(source))) > 0;
    }
    if (written && file.commit())
        return;
    auto *box = new QMessageBox(QMessageBox::Warning, "Camera control",
                                QString("Cannot write \"%1\": %2.").arg(path, file.errorString()),
                                QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
