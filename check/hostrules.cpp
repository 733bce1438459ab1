#include "hostrules.h"

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(hostCheck, "orv_hostcheck")

static constexpr const char *stateNames[] = {"not yet seen", "passed", "failed"};

static QString inWords(const Rule &rule)
{
    return rule.seen.isEmpty() ? rule.text : QString("%1: %2").arg(rule.text, rule.seen);
}

void HostRules::judge(Rule &rule, bool kept, const QString &seen)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Rule::State before = rule.state;
    if (before == Rule::Failed && kept)
        return;
    rule.state = kept ? Rule::Passed : Rule::Failed;
    rule.seen = seen;
    if (rule.state == before)
        return;
    if (kept)
        qCInfo(hostCheck, "passed: %s", qPrintable(inWords(rule)));
    else
        qCWarning(hostCheck, "failed: %s", qPrintable(inWords(rule)));
}

QString HostRules::inHtml()
{
    // White text needs its own background, because the host's may be light.
    static constexpr const char *colors[] = {"#5F6368", "#2E7D32", "#C62828"};
    QString text = "<b>Host check</b>";
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Rule *const rule : m_rules)
        text +=
            QString("<p style='margin: 6px 0'>"
                    "<span style='background: %1; color: white'>&nbsp;%2&nbsp;</span> %3</p>")
                .arg(colors[rule->state], stateNames[rule->state], inWords(*rule).toHtmlEscaped());
    return text;
}

void HostRules::log()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    qCInfo(hostCheck, "At the end:");
    for (const Rule *const rule : m_rules)
        qCInfo(hostCheck, "%s: %s", stateNames[rule->state], qPrintable(inWords(*rule)));
}
