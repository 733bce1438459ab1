#pragma once

#include "tracemodel.h"

#include <QGroupBox>
#include <QSortFilterProxyModel>

class QHBoxLayout;
class QTableView;

/// The trace of the channel: a table that the user can filter, copy and save.
class TracePanel : public QGroupBox
{
    Q_OBJECT
public:
    TracePanel();

    TraceModel &trace() { return m_trace; }

    /// Wide enough for the usual texts of all columns.
    QSize sizeHint() const override;

private:
    void addTools(QHBoxLayout &tools);
    void layOutColumns();
    void copy() const;
    void save();
    void write(const QString &path);

    TraceModel m_trace;
    QSortFilterProxyModel m_rows; ///< those that contain the filter's text
    QTableView *m_table;
    int m_wantedWidth = 0;
    bool m_follows = true; ///< whether new rows scroll into view
};
