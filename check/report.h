#pragma once

#include <QString>

/// Unless `kept`: reports what was expected and what came instead, and ends the process.
void expect(bool kept, const QString &expected, const QString &came);

/// Reports what the check does next, in case the panel crashes or hangs.
void step(const QString &what);

/// Keeps standard output for the reports. What the panel prints goes to standard error from now on.
void beginReports();

/// Reports that the check has passed, and ends the process.
[[noreturn]] void endReports();
