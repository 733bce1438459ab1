#pragma once

#include <QString>

#include <vector>

class Host;

/// One rule of the contract between host and panel, and how to check it.
struct Check
{
    const char *name;
    const char *rule;
    void (*run)(Host &host);
    const char *needs = ""; ///< an earlier check; if that did not pass, this one is skipped
    const char *dpi = "96"; ///< logical dots per inch of the screen
    int tries = 1;          ///< the check fails only if this many attempts fail
};

std::vector<Check> loadingChecks();
std::vector<Check> lifeChecks();
std::vector<Check> leftoverChecks();
std::vector<Check> requestChecks();

/// Runs each check in a separate process, because a panel may crash or hang. Runs several at a time
/// and prints the results in the order of `checks`. Returns true if no check failed.
bool runChecks(const std::vector<Check> &checks, const QString &plugin, quint32 seed);
