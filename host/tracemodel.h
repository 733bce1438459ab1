#pragma once

#include "transfer.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QSortFilterProxyModel>

#include <deque>
#include <vector>

/// The transfers of a session, one per row, the newest last. Keeps the newest 10,000.
class TraceModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { Time, Duration, Direction, Request, Selector, Meaning, Result, Bytes, Count };
    enum Role {
        ChangedBytes =
            Qt::UserRole, ///< a QByteArray: 1 for each byte that changed since the last of its kind
        Repeats,          ///< number of status reads after this one that brought nothing new
        IsRepeat          ///< whether this status read brought nothing new
    };

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    void add(const Transfer &transfer);

    /// While paused, new transfers are kept back. They are added when the pause ends.
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
    QHash<QByteArray, QByteArray> m_lastOfKind;
    int m_lastRead = -1; ///< row of the last status read; -1 after a command or event
    bool m_paused = false;
};

/// The rows that contain a text. If folded, status reads that brought nothing new are counted in
/// the row before them instead of shown.
class TraceFilter : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    /// Initially folded, without a text.
    explicit TraceFilter(TraceModel &trace);

    void setFolded(bool folded);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    bool m_folded = true;
};
