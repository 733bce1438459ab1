#pragma once

#include "look.h"

#include <QByteArray>
#include <QGroupBox>
#include <QHash>

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QTableWidget;
struct Transfer;

/// The transfers of a session, the newest last, in a table that the user can filter, copy and save.
/// A status read that repeats the one before it is counted in that row.
class TracePanel : public QGroupBox
{
    Q_OBJECT
public:
    enum Column { Time, Duration, Request, Meaning, Times, Result, Bytes, Count };
    /// Role in the column Bytes: its text in HTML. Bytes that differ from the previous transfer of
    /// the same kind have another colour.
    static constexpr int ColoredBytes = Qt::UserRole;

    /// Keeps the newest `maximumRows` rows.
    explicit TracePanel(int maximumRows = 10000);

    void add(const Transfer &transfer);

private:
    void addTools(QHBoxLayout &tools);
    void setUpTable();
    int appendRow(const QStringList &texts);
    QString coloredBytes(const Transfer &transfer);
    Transfer transferIn(int row) const;
    QString textOf(int row) const; ///< its cells, separated by tabs
    void filterRow(int row);
    void filterRows();
    void showMatches();
    void copy() const;
    void save();
    void write(const QString &path);

    const int m_maximumRows;
    QLineEdit *m_filter;
    QTableWidget *m_table;
    QLabel *m_noMatch; ///< in the table's place if the filter hides all rows
    QFont m_byteFont{"monospace", Look::textPoints};
    QHash<QByteArray, QByteArray> m_lastOfKind;
    int m_lastRead = -1;   ///< row of the last status read; -1 after a command or event
    int m_lastUnsent = -1; ///< row of the last read since then that was not sent
};
