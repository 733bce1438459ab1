#pragma once

#include "transfer.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QSortFilterProxyModel>

#include <deque>
#include <vector>

/// The transfers of a session, a row each, the latest last. The oldest go when there are very many.
class TraceModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { Time, Duration, Direction, Request, Selector, Meaning, Result, Bytes, Count };
    enum Role {
        ChangedBytes = Qt::UserRole, ///< Bytes: a QByteArray, 1 where the last of its kind differs
        Repeats,                     ///< how many status reads after this one brought nothing new
        IsRepeat                     ///< whether this one brought nothing new
    };

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    void add(const Transfer &transfer);

    /// While paused, what is added is kept back. It comes with the end of the pause.
    void setPaused(bool paused);

    const Transfer &transfer(int row) const { return m_rows.at(row).transfer; }

private:
    struct Row
    {
        Transfer transfer;
        QByteArray changed;
        int repeats = 0;
        bool isRepeat = false;
    };

    void append(const Transfer &transfer);
    QByteArray changes(const Transfer &transfer);

    std::deque<Row> m_rows;
    std::vector<Transfer> m_keptBack;
    QHash<QString, QByteArray> m_lastOfKind;
    int m_lastRead = -1; ///< row of the last status read, unless a command or event came since
    bool m_paused = false;
};

/// The rows that contain a text, and if folded without the status reads that brought nothing new:
/// the row before them counts them.
class TraceFilter : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    /// Folded and without a text at first.
    explicit TraceFilter(TraceModel &trace);

    void setFolded(bool folded);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    bool m_folded = true;
};
