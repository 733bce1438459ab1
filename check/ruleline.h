#pragma once

#include <QLabel>
#include <QLayout>
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(hostCheck)

/// Shows what is known about one rule. Changes of its state also go to the debug stream.
class RuleLine : public QLabel
{
    Q_OBJECT

public:
    enum State { NotYetSeen, Passed, Failed };

    RuleLine(QLayout &lines, const char *rule)
        : m_rule(rule)
    {
        setWordWrap(true);
        lines.addWidget(this);
        show(NotYetSeen, {});
    }
    State state() const { return m_state; }

    /// Sets the state. A line that has failed stays that way. `seen` is appended to the rule.
    void judge(bool kept, const QString &seen = {})
    {
        const State before = m_state;
        if (before == Failed && kept)
            return;
        show(kept ? Passed : Failed, seen);
        if (m_state == Failed && before != Failed)
            qCWarning(hostCheck, "%s", qPrintable(accessibleName()));
        else if (m_state != before)
            qCInfo(hostCheck, "%s", qPrintable(accessibleName()));
    }

    /// Sets the state, and says what was seen only if the rule was broken.
    void require(bool kept, const QString &otherwise) { judge(kept, kept ? "" : otherwise); }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QLabel::resizeEvent(event);
        makeRoom();
    }

private:
    // Where space is short, layouts give a label that wraps only one line.
    void makeRoom() { setMinimumHeight(heightForWidth(width())); }

    void show(State state, const QString &seen)
    {
        static constexpr const char *states[] = {"not yet seen", "passed", "failed"};
        // White text needs a background of its own: the host's may be light or dark.
        static constexpr const char *colors[] = {"#5F6368", "#2E7D32", "#C62828"};
        m_state = state;
        const QString rest = seen.isEmpty() ? m_rule : m_rule + ": " + seen;
        setAccessibleName(QString(states[state]) + ": " + rest);
        setText(QString("<span style='background: %1; color: white'>&nbsp;%2&nbsp;</span> %3")
                    .arg(colors[state], states[state], rest.toHtmlEscaped()));
        makeRoom();
    }

    const QString m_rule;
    State m_state = NotYetSeen;
};
