#pragma once

#include <QString>

/// If `kept` is false, reports what was expected and what came instead, and ends the process.
void expect(bool kept, const QString &expected, const QString &came);

/// Reports what the check does next, in case the panel crashes or hangs.
void step(const QString &what);

/// Reserves standard output for the reports. From now on, the panel's output goes to standard
/// error.
void beginReports();

/// Reports that the check has passed, and ends the process.
[[noreturn]] void endReports();
