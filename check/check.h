#pragma once

#include <QString>

#include <vector>

class Host;

/// One rule of the contract between host and panel, and how it is checked. A check runs in a
/// process of its own, which ends with it: a panel may do there what it wants.
struct Check
{
    const char *name;
    const char *rule;
    void (*run)(Host &host);
    const char *needs = ""; ///< the check without which this one would say nothing; stands before
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
