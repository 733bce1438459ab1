#pragma once

#include "tracemodel.h"

#include <QGroupBox>

class QHBoxLayout;
class QTableView;

/// What passes over the channel, as a table that can be filtered, folded, paused, copied and saved.
class TracePanel : public QGroupBox
{
    Q_OBJECT
public:
    TracePanel();

    TraceModel &trace() { return m_trace; }

    /// As wide as every text wants it; the user may have it narrower.
    QSize sizeHint() const override;

Q_SIGNALS:
    /// A sentence for the user: what became of a request to save.
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
    bool m_atBottom = true; ///< before rows came
};
