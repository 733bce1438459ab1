#pragma once

#include <QString>

#include <chrono>
#include <random>
#include <vector>

/// What a check gets to work with.
struct Task
{
    QString plugin; ///< the file, with its whole path
    mutable std::mt19937 random;

    /// A number of 0 to `count` - 1, the same in every run with the same seed.
    int any(int count) const { return static_cast<int>(random() % static_cast<unsigned>(count)); }

    /// A span of less than `limit`.
    std::chrono::milliseconds anyTime(int limit) const
    {
        return std::chrono::milliseconds(any(limit));
    }
};

/// One rule of the contract between host and panel, and how it is checked. A check runs in a
/// process of its own, which ends with it: a panel may do there what it wants.
struct Check
{
    const char *name;
    const char *rule;
    void (*run)(const Task &task);
    const char *needs = ""; ///< the check without which this one would say nothing
    const char *dpi = "96"; ///< the logical density of its screen
    int tries = 1;          ///< how often it may fail before it has failed
};

std::vector<Check> loadingChecks();
std::vector<Check> lifeChecks();
std::vector<Check> requestChecks();

/// For checks: ends the process unless `kept`, with what was expected and what came instead.
void expect(bool kept, const QString &expected, const QString &came);

/// For checks: what is being done, should the panel crash or hang there.
void step(const QString &what);
