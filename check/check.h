#pragma once

#include <QString>

#include <random>
#include <vector>

/// What a check gets to work with.
struct Task
{
    QString plugin; ///< the file
    quint32 seed = 0;
    mutable std::mt19937 random{seed};

    /// A number of 0 to `count` - 1, the same in every run with the same seed.
    int any(int count) const { return static_cast<int>(random() % static_cast<unsigned>(count)); }
};

/// One rule of the contract between host and panel, and how it is checked. A check runs in a
/// process of its own, which ends with it: a panel may do there what it wants.
struct Check
{
    const char *name;
    const char *rule;
    void (*run)(const Task &task);
    const char *needs = ""; ///< the check without which this one would say nothing
    int dotsPerInch = 96;   ///< the logical density of its screen
    int tries = 1;          ///< how often it may fail before it has failed
};

/// Every check, each after the one that it needs.
std::vector<Check> allChecks();
std::vector<Check> loadingChecks();
std::vector<Check> lifeChecks();
std::vector<Check> requestChecks();

/// The check `name`; null if there is none.
const Check *findCheck(const QString &name);

/// Runs a check in this process, which does not survive it: the exit status is 0 if the rule is
/// kept. Standard output gets the lines that Runner reads; what a panel writes there goes to
/// standard error instead.
[[noreturn]] void runCheck(const Check &check, const Task &task);

/// For checks: ends the process unless `kept`, with what was expected and what came instead.
void expect(bool kept, const QString &expected, const QString &came);

/// For checks: what is being done, should the panel crash or hang there.
void step(const QString &what);
