#include "tracemodel.h"

#include "trackingprotocol.h"
#include "transfertext.h"

#include <algorithm>

namespace {

constexpr int maximumRows = 10000;

constexpr const char *titles[TraceModel::Count] = {
    "Time", "Duration", "Direction", "Request", "Selector", "Meaning", "Result", "First bytes"};

/// Whether a status read brings nothing new. After a failed read, a read that was not sent does
/// not.
bool isRepeat(const Transfer &read, const Transfer &previous)
{
    const bool sameResult = read.outcome == previous.outcome && read.error == previous.error;
    return read.bytes == previous.bytes &&
           (sameResult ||
            (previous.outcome != Transfer::Succeeded && read.outcome == Transfer::NotSent));
}

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
    case Control:
        return transfer.selector ? QString::number(transfer.selector) : QString();
    case Meaning:
        return row.times == 1 ? transfer.meaning
                              : QString("%1 (%2 times)").arg(transfer.meaning).arg(row.times);
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
    if (transfer.isStatusRead() && m_lastRead >= 0) {
        Row &last = m_rows.at(m_lastRead);
        if (isRepeat(transfer, last.transfer)) {
            ++last.times;
            Q_EMIT dataChanged(index(m_lastRead, Meaning), index(m_lastRead, Meaning));
            return;
        }
    }
    if (rowCount() == maximumRows) {
        beginRemoveRows({}, 0, 0);
        m_rows.pop_front();
        endRemoveRows();
        m_lastRead = std::max(m_lastRead - 1, -1);
    }
    beginInsertRows({}, rowCount(), rowCount());
    m_rows.push_back({transfer, changes(transfer)});
    endInsertRows();
    if (transfer.isStatusRead())
        m_lastRead = rowCount() - 1;
    else if (transfer.selector != 0 || transfer.direction == Transfer::Event)
        m_lastRead = -1;
}

QByteArray TraceModel::changes(const Transfer &transfer)
{
    if (transfer.bytes.isEmpty())
        return {};
    QByteArray kind = QByteArray::number(transfer.direction);
    if (!transfer.isStatusRead()) // Compare a command with the last one for the same setting.
        kind += transfer.bytes.mid(TrackingProtocol::commandOffset, 1);
    const QByteArray before = m_lastOfKind.value(kind, transfer.bytes);
    m_lastOfKind[kind] = transfer.bytes;
    QByteArray changed(transfer.bytes.size(), 0);
    for (int i = 0; i < changed.size(); ++i)
        changed[i] = i >= before.size() || before.at(i) != transfer.bytes.at(i) ? 1 : 0;
    return changed;
}
