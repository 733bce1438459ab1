#pragma once

#include <QString>

#include <array>
#include <mutex>

/// A rule for hosts, and whether the host keeps it.
struct Rule
{
    enum State { NotYetSeen, Passed, Failed };

    const char *text;
    State state = NotYetSeen;
    QString seen = {};
};

/// The rules for hosts. The functions may be called on any thread.
class HostRules
{
public:
    /// Sets the rule's state and logs a change. A failed rule stays failed.
    void judge(Rule &rule, bool kept, const QString &seen);

    QString inHtml();
    void log(); ///< all rules

    Rule channelFirst{"The channel is installed before insertWidget, and stays"};
    Rule resetLater{"resetToDefault comes only after insertWidget"};
    Rule insertedOnce{"insertWidget comes once, with a container that is shown"};
    Rule guiThread{"Every call comes on the GUI thread"};
    Rule pictures{"The pictures that a host provides can be read"};
    Rule language{"The answer to the setting \"language\" is a number"};
    Rule otherSetting{"A query for an unknown setting does no harm"};
    Rule status{
        "The answer to a read of control 8 is an ExtensionUnit of 280 bytes with selector 8,"
        " a length of at most 255, and zeros beyond it"};
    Rule answers{"Every answer comes within 1000 ms"};
    Rule thawed{"A frozen window thaws within 400 ms"};
    Rule destroyed{"The instance is destroyed as a QObject, not during a request"};

private:
    const std::array<const Rule *, 11> m_rules{
        &channelFirst, &resetLater, &insertedOnce, &guiThread, &pictures, &language,
        &otherSetting, &status,     &answers,      &thawed,    &destroyed};
    std::mutex m_mutex; ///< guards the rules
};
