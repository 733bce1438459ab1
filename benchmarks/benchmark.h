#pragma once

#include <functional>

/// Measures this project against a floor: a small piece of code that does no more than it must.
///
/// Both sides run in one process, in turns. Each measurement prints one line per side, with the
/// fields subject, unit, side ("ours" or "floor"), value and target, a bar between them. A target
/// is the largest ratio wanted; with a plus before it, the largest difference.
namespace Bench {

using Step = std::function<void()>;

/// A duration in ns, taken by the step itself.
using TimedStep = std::function<double()>;

/// How long a step takes: the best of several runs. Nothing under valgrind.
void time(const char *subject, const char *target, const Step &ours, const Step &floor);

/// The same for what a process can do only once: each run has a copy of this process to itself.
void timeInCopies(const char *subject, const char *target, const TimedStep &ours,
                  const TimedStep &floor);

/// The instructions of one run of each step, after two that do not count. Under callgrind only,
/// which writes them down under the same fields.
void instructions(const char *subject, const char *target, const Step &ours, const Step &floor);

/// What the caller has counted. Nothing under valgrind.
void figure(const char *subject, const char *unit, const char *target, double ours, double floor);

/// Takes the times that time() and timeInCopies() have asked for. Returns an exit status.
int run();

/// The shortest of several runs of a step, in ns.
double bestOf(int runs, const Step &step);

} // namespace Bench
