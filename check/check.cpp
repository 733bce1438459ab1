#include "check.h"

#include <QByteArray>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

/// Where Runner reads; standard output, until runCheck() gives that to the panel.
int report = STDOUT_FILENO;

void tell(const char *key, const QString &text)
{
    const QByteArray line = key + text.simplified().toUtf8() + '\n';
    if (write(report, line.constData(), static_cast<size_t>(line.size())) < 0)
        std::_Exit(EXIT_FAILURE);
}

} // namespace

std::vector<Check> allChecks()
{
    std::vector<Check> checks = loadingChecks();
    for (const auto &more : {lifeChecks(), requestChecks()})
        checks.insert(checks.end(), more.begin(), more.end());
    return checks;
}

const Check *findCheck(const QString &name)
{
    static const std::vector<Check> checks = allChecks();
    const auto found = std::find_if(checks.begin(), checks.end(), [&](const Check &check) {
        return name == QLatin1String(check.name);
    });
    return found != checks.end() ? &*found : nullptr;
}

void runCheck(const Check &check, const Task &task)
{
    report = dup(STDOUT_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    check.run(task);
    // Nothing is torn down: what a panel does at the end of a process is no check's subject.
    std::_Exit(EXIT_SUCCESS);
}

void expect(bool kept, const QString &expected, const QString &came)
{
    if (kept)
        return;
    tell("expected: ", expected);
    tell("came: ", came);
    std::_Exit(EXIT_FAILURE);
}

void step(const QString &what)
{
    tell("step: ", what);
}
