#include "check.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMap>
#include <QProcess>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <future>

using namespace std::chrono_literals;

/// Describes how the process ended without a result, or that it did not end.
static QString describeEnd(const QProcess &process, std::chrono::seconds timeLimit)
{
    if (process.state() != QProcess::NotRunning)
        return QString("none within %1 s").arg(timeLimit / 1s);
    if (process.exitStatus() == QProcess::CrashExit)
        return QString("a crash (%1)").arg(strsignal(process.exitCode()));
    return QString("an exit with status %1").arg(process.exitCode());
}

/// Returns an empty list if the check passed, else what was expected and what came instead.
static QStringList runInProcess(const Check &check, const QString &plugin, quint32 seed)
{
    const int customLimit = qEnvironmentVariableIntValue("ORVCHECK_TIME_LIMIT");
    const std::chrono::seconds timeLimit(customLimit > 0 ? customLimit : 30);
    QElapsedTimer time;
    time.start();
    // The panel must not use the user's settings, or those of another check.
    const QTemporaryDir folder;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char *const name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "TMPDIR"})
        environment.insert(name, folder.path());
    environment.insert("LD_BIND_NOW", "1"); // loading fails if a symbol is missing
    // The allocator's cache of freed blocks would look like a leak.
    environment.insert("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  {"--check", check.name, plugin, QString::number(seed)});
    QByteArray printed;
    // Reads often, in case the panel prints without end.
    while (process.state() != QProcess::NotRunning && !time.hasExpired(timeLimit / 1ms)) {
        process.waitForFinished(100);
        printed = (printed + process.readAllStandardError()).right(1000);
    }
    const QString end = describeEnd(process, timeLimit);
    process.kill();
    process.waitForFinished();

    QMap<QString, QString> reports;
    const auto lines = QString(process.readAllStandardOutput()).split('\n');
    for (const QString &line : lines)
        reports[line.section(' ', 0, 0)] = line.section(' ', 1);
    if (reports.contains("passed"))
        return {};
    if (!reports.contains("expected")) {
        reports["expected"] = "an end of the check";
        reports["came"] = end;
        const QString lastLine = printed.trimmed().split('\n').constLast();
        if (!lastLine.isEmpty())
            reports["came"] += ", after \"" + lastLine.simplified() + '"';
    }
    if (reports.contains("step"))
        reports["came"] += "; at: " + reports["step"];
    return {"expected: " + reports["expected"], "came:     " + reports["came"]};
}

/// The result of a check: "passed", "FAILED" or "skipped", and why it did not pass.
struct Result
{
    QString word;
    QStringList details = {};
};

bool runChecks(const std::vector<Check> &checks, const QString &plugin, quint32 seed)
{
    // At least four checks at a time, because a panel that hangs may sleep.
    QSemaphore places(std::max(4, QThread::idealThreadCount()));
    QMap<QString, std::shared_future<Result>> results;
    for (const Check &check : checks) {
        const auto run = [&, needed = results.value(check.needs)]() -> Result {
            if (needed.valid() && needed.get().word != "passed")
                return {"skipped", {QString("needs:    ") + check.needs}};
            places.acquire();
            const QSemaphoreReleaser place(places);
            QStringList details = runInProcess(check, plugin, seed);
            for (int tries = 1; tries < check.tries && !details.isEmpty(); ++tries)
                details = runInProcess(check, plugin, seed);
            return {details.isEmpty() ? "passed" : "FAILED", details};
        };
        results[check.name] = std::async(std::launch::async, run);
    }
    QTextStream out(stdout);
    bool failed = false;
    for (const Check &check : checks) {
        const Result result = results[check.name].get();
        failed = failed || result.word == "FAILED";
        out << result.word.leftJustified(16) << QString(check.name).leftJustified(16) << check.rule
            << '\n';
        for (const QString &line : result.details)
            out << "  " << line << '\n';
        out.flush();
    }
    return !failed;
}
