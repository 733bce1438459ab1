#pragma once

#include "transfer.h"

#include <QAbstractTableModel>
#include <QHash>

#include <deque>

/// The transfers of a session, the newest last. A status read that brings nothing new is counted in
/// the row of the previous one. Keeps the newest 10,000 rows.
class TraceModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { Time, Duration, Direction, Request, Control, Meaning, Result, Bytes, Count };
    /// Role of a QByteArray with a 1 for each byte that differs from the previous transfer of the
    /// same kind, else a 0.
    static constexpr int ChangedBytes = Qt::UserRole;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    void add(const Transfer &transfer);

    const Transfer &transfer(int row) const { return m_rows.at(row).transfer; }

private:
    struct Row
    {
        Transfer transfer;
        QByteArray changed;
        int times = 1;
    };

    QByteArray changes(const Transfer &transfer);

    std::deque<Row> m_rows;
    QHash<QByteArray, QByteArray> m_lastOfKind;
    int m_lastRead = -1; ///< row of the last status read; -1 after a command or event
};
