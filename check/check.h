#pragma once

#include <vector>

class Host;

/// One rule of the contract between host and panel, and how to check it. Each check runs in a
/// process of its own, so a panel may do any damage there.
struct Check
{
    const char *name;
    const char *rule;
    void (*run)(Host &host);
    const char *needs = ""; ///< an earlier check; if that fails, this one is skipped
    const char *dpi = "96"; ///< the screen's logical density
    int tries = 1;          ///< fails only if this many attempts fail
};

std::vector<Check> loadingChecks();
std::vector<Check> lifeChecks();
std::vector<Check> requestChecks();
