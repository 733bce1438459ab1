#pragma once

#include <QString>

/// Ends the process unless `kept`, and reports what was expected and what came instead.
void expect(bool kept, const QString &expected, const QString &came);

/// Reports what the check does next, in case the panel crashes or hangs there.
void step(const QString &what);

/// Separates the reports, on standard output, from everything that the panel prints: that goes to
/// standard error from now on.
void beginReports();

/// Ends the process of a check that found nothing wrong.
[[noreturn]] void endReports();
