#pragma once

#include "check.h"

class QFile;

/// Runs each check in a process of its own, several side by side, and prints a line on each as soon
/// as those before it are printed; writes the outcomes to `junit` too, if it is open, as JUnit
/// does. A check whose need is not among `checks` runs as if that had passed. Returns how many
/// failed.
int runChecks(const std::vector<Check> &checks, const QString &plugin, quint32 seed, QFile &junit);

/// In the process of a single check, which this ends.
[[noreturn]] void runHere(const Check &check, const QString &plugin, quint32 seed);
