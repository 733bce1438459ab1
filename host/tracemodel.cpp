#include "tracemodel.h"

#include "trackingprotocol.h"
#include "transfertext.h"

#include <algorithm>

namespace {

constexpr int maximumRows = 10000;

constexpr const char *titles[TraceModel::Count] = {
    "Time", "Duration", "Direction", "Request", "Selector", "Meaning", "Result", "First bytes"};

} // namespace

int TraceModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int TraceModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Count;
}

QVariant TraceModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Row &row = m_rows.at(index.row());
    const Transfer &transfer = row.transfer;
    switch (role) {
    case ChangedBytes:
        return row.changed;
    case Repeats:
        return row.repeats;
    case IsRepeat:
        return row.isRepeat;
    case Qt::ToolTipRole:
        if (index.column() == Bytes)
            return QString(transfer.bytes.toHex(' ')).toUpper();
        break;
    case Qt::DisplayRole:
        break;
    default:
        return {};
    }
    switch (index.column()) {
    case Time:
        return transfer.time.toString("HH:mm:ss.zzz");
    case Duration:
        return QString("%1 ms").arg(transfer.duration);
    case Direction:
        return directionText(transfer);
    case Request:
        return requestText(transfer);
    case Selector:
        return transfer.selector ? QString::number(transfer.selector) : QString();
    case Meaning:
        return transfer.meaning;
    case Result:
        return resultText(transfer);
    default:
        return firstBytes(transfer);
    }
}

QVariant TraceModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return titles[section];
    return QAbstractTableModel::headerData(section, orientation, role);
}

void TraceModel::add(const Transfer &transfer)
{
    if (m_paused)
        m_keptBack.push_back(transfer);
    else
        append(transfer);
}

void TraceModel::setPaused(bool paused)
{
    m_paused = paused;
    if (paused)
        return;
    for (const Transfer &transfer : m_keptBack)
        append(transfer);
    m_keptBack.clear();
}

void TraceModel::append(const Transfer &transfer)
{
    if (rowCount() == maximumRows) {
        beginRemoveRows({}, 0, 0);
        m_rows.pop_front();
        endRemoveRows();
        m_lastRead = std::max(m_lastRead - 1, -1);
    }

    Row row{transfer, changes(transfer)};
    if (transfer.isStatusRead() && m_lastRead >= 0) {
        const Transfer &last = m_rows.at(m_lastRead).transfer;
        // After a failed read, one that was not sent brings nothing new.
        row.isRepeat =
            transfer.bytes == last.bytes &&
            ((transfer.outcome == last.outcome && transfer.error == last.error) ||
             (last.outcome != Transfer::Succeeded && transfer.outcome == Transfer::NotSent));
    }
    beginInsertRows({}, rowCount(), rowCount());
    m_rows.push_back(row);
    endInsertRows();
    if (row.isRepeat) {
        ++m_rows.at(m_lastRead).repeats;
        Q_EMIT dataChanged(index(m_lastRead, 0), index(m_lastRead, Count - 1));
    } else if (transfer.isStatusRead()) {
        m_lastRead = rowCount() - 1;
    } else if (transfer.selector != 0 || transfer.direction == Transfer::Event) {
        m_lastRead = -1;
    }
}

QByteArray TraceModel::changes(const Transfer &transfer)
{
    if (transfer.bytes.isEmpty())
        return {};
    QByteArray kind = QByteArray::number(transfer.direction);
    if (!transfer.isStatusRead()) // Compare commands with those for the same setting.
        kind += transfer.bytes.mid(TrackingProtocol::commandOffset, 1);
    const QByteArray before = m_lastOfKind.value(kind, transfer.bytes);
    m_lastOfKind[kind] = transfer.bytes;
    QByteArray changed(transfer.bytes.size(), 0);
    for (int i = 0; i < changed.size(); ++i)
        changed[i] = i >= before.size() || before.at(i) != transfer.bytes.at(i) ? 1 : 0;
    return changed;
}

TraceFilter::TraceFilter(TraceModel &trace)
{
    setSourceModel(&trace);
    setFilterKeyColumn(-1);
    setFilterCaseSensitivity(Qt::CaseInsensitive);
}

void TraceFilter::setFolded(bool folded)
{
    m_folded = folded;
    invalidate(); // the counts change too
}

QVariant TraceFilter::data(const QModelIndex &index, int role) const
{
    QVariant shown = QSortFilterProxyModel::data(index, role);
    if (!m_folded || index.column() != TraceModel::Meaning || role != Qt::DisplayRole)
        return shown;
    const int repeats = index.data(TraceModel::Repeats).toInt();
    return repeats > 0 ? QString("%1 (%2 times)").arg(shown.toString()).arg(repeats + 1) : shown;
}

bool TraceFilter::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    const bool repeat = sourceModel()->index(row, 0, parent).data(TraceModel::IsRepeat).toBool();
    return !(m_folded && repeat) && QSortFilterProxyModel::filterAcceptsRow(row, parent);
}
