#pragma once

#include "check.h"

#include <QString>

/// Runs each check in a process of its own, several at a time, and prints the results in order.
/// Checks whose need is not among `checks` run anyway. Returns how many failed.
int runChecks(const std::vector<Check> &checks, const QString &plugin, quint32 seed);
