#pragma once

#include "tracemodel.h"

#include <QGroupBox>

class QHBoxLayout;
class QTableView;

/// The trace of the channel: a table that the user can filter, fold, pause, copy and save.
class TracePanel : public QGroupBox
{
    Q_OBJECT
public:
    TracePanel();

    TraceModel &trace() { return m_trace; }

    /// Wide enough for the longest texts.
    QSize sizeHint() const override;

Q_SIGNALS:
    /// A sentence for the user: whether the rows were saved.
    void noticed(const QString &sentence);

private:
    void addTools(QHBoxLayout &tools);
    void layOutColumns();
    void copy() const;
    void save();

    TraceModel m_trace;
    TraceFilter m_rows;
    QTableView *m_table;
    int m_wantedWidth = 0;
    bool m_atBottom = true; ///< before the last rows came
};
