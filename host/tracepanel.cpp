#include "tracepanel.h"

#include "look.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
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

/// What each column must have room for.
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
    QFont font(QStringLiteral("monospace"), Look::textPoints);
    font.setStyleHint(QFont::Monospace);
    return font;
}

/// Shows bytes, those in another colour that changed.
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
        const QStringList words = text.split(QLatin1Char(' '));
        for (const QString &word : words) {
            const bool mark = byte < changed.size() && changed.at(byte) != 0;
            painter->setPen(mark ? QColor(changedColor) : option.palette.color(QPalette::Text));
            painter->drawText(rest, Qt::AlignVCenter, word);
            rest.translate(painter->fontMetrics().horizontalAdvance(word + QLatin1Char(' ')), 0);
            ++byte;
        }
        painter->restore();
    }
};

} // namespace

TracePanel::TracePanel()
    : QGroupBox(QStringLiteral("Transfers"))
    , m_rows(m_trace)
    , m_table(new QTableView)
{
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

    // Whoever looks at earlier rows is not taken away from them.
    connect(&m_rows, &QAbstractItemModel::rowsAboutToBeInserted, this, [this] {
        const QScrollBar *const bar = m_table->verticalScrollBar();
        m_atBottom = bar->value() == bar->maximum();
    });
    connect(&m_rows, &QAbstractItemModel::rowsInserted, this, [this] {
        if (m_atBottom)
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
    filter->setPlaceholderText(QStringLiteral("Filter"));
    filter->setClearButtonEnabled(true);
    connect(filter, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_rows.setFilterFixedString(text); });
    tools.addWidget(filter, 1);

    const auto addBox = [&](const QString &title, bool checked, const QString &tip) {
        auto *box = new QCheckBox(title);
        box->setChecked(checked);
        box->setToolTip(tip);
        tools.addWidget(box);
        return box;
    };
    connect(addBox(QStringLiteral("Fold repeated reads"), true,
                   QStringLiteral("One row for status reads that bring nothing new")),
            &QCheckBox::toggled, this, [this](bool on) { m_rows.setFolded(on); });
    connect(addBox(QStringLiteral("Pause"), false,
                   QStringLiteral("New rows are kept back until the pause ends")),
            &QCheckBox::toggled, this, [this](bool on) { m_trace.setPaused(on); });

    const auto addButton = [&](const QString &title, const QString &tip) {
        auto *button = new QPushButton(title);
        button->setToolTip(tip);
        tools.addWidget(button);
        return button;
    };
    connect(addButton(QStringLiteral("Copy"),
                      QStringLiteral("The selected rows, or else all that are shown")),
            &QPushButton::clicked, this, &TracePanel::copy);
    connect(addButton(QStringLiteral("Save..."),
                      QStringLiteral("The rows that are shown, a JSON object a line")),
            &QPushButton::clicked, this, &TracePanel::save);
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
    // The scroll bar, and what stands around a table in a group.
    m_wantedWidth = m_table->verticalScrollBar()->sizeHint().width() + 5 * padding;
    for (int column = 0; column < TraceModel::Count; ++column) {
        const QString title = m_trace.headerData(column, Qt::Horizontal).toString();
        const QFontMetrics &metrics = column == TraceModel::Bytes ? fixed : proportional;
        const int width =
            padding + std::max(proportional.horizontalAdvance(title),
                               metrics.horizontalAdvance(QString::fromLatin1(widest[column])));
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
        lines += cells.join(QLatin1Char('\t'));
    }
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void TracePanel::save()
{
    auto *dialog = new QFileDialog(this, QStringLiteral("Save the rows that are shown"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("jsonl"));
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        QSaveFile file(path);
        bool written = file.open(QIODevice::WriteOnly);
        for (int row = 0; written && row < m_rows.rowCount(); ++row) {
            const int source = m_rows.mapToSource(m_rows.index(row, 0)).row();
            written = file.write(m_trace.transfer(source).toJsonLine()) > 0;
        }
        Q_EMIT noticed((written && file.commit() ? QStringLiteral("Saved \"%1\".")
                                                 : QStringLiteral("Cannot write the file \"%1\"."))
                           .arg(path));
    });
    dialog->open();
}
