#include "runner.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMap>
#include <QProcess>
#include <QSemaphore>
#include <QTextStream>
#include <QThread>

#include <algorithm>
#include <cstring>
#include <future>

using namespace std::chrono_literals;

struct Outcome
{
    enum State { Passed, Failed, Skipped };

    State state = Skipped;
    QStringList details; ///< why the check has not passed
};

/// How the process ended, if it did so before its check.
static QString describeEnd(const QProcess &process, std::chrono::seconds timeLimit)
{
    if (process.state() != QProcess::NotRunning)
        return QString("none within %1 s").arg(timeLimit / 1s);
    if (process.exitStatus() == QProcess::CrashExit)
        return QString("a crash (%1)").arg(strsignal(process.exitCode()));
    return QString("an exit with status %1").arg(process.exitCode());
}

static Outcome runInProcess(const Check &check, const QString &plugin, quint32 seed)
{
    const int customLimit = qEnvironmentVariableIntValue("ORVCHECK_TIME_LIMIT");
    const std::chrono::seconds timeLimit(customLimit > 0 ? customLimit : 30);
    QElapsedTimer time;
    time.start();
    QProcess process;
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
        return {Outcome::Passed, {}};
    if (!reports.contains("expected")) {
        reports["expected"] = "an end of the check";
        reports["came"] = end;
        const QString lastLine = printed.trimmed().split('\n').constLast();
        if (!lastLine.isEmpty())
            reports["came"] += ", after \"" + lastLine.simplified() + '"';
    }
    if (reports.contains("step"))
        reports["came"] += "; at: " + reports["step"];
    return {Outcome::Failed, {"expected: " + reports["expected"], "came:     " + reports["came"]}};
}

int runChecks(const std::vector<Check> &checks, const QString &plugin, quint32 seed)
{
    // More than the processors, because a panel that hangs may be asleep.
    QSemaphore places(std::max(4, QThread::idealThreadCount()));
    QMap<QString, std::shared_future<Outcome>> futures;
    for (const Check &check : checks) {
        const auto run = [&, needed = futures.value(check.needs)]() -> Outcome {
            if (needed.valid() && needed.get().state != Outcome::Passed)
                return {Outcome::Skipped, {QString("needs:    ") + check.needs}};
            places.acquire();
            const QSemaphoreReleaser place(places);
            Outcome outcome;
            for (int tries = 0; tries < check.tries && outcome.state != Outcome::Passed; ++tries)
                outcome = runInProcess(check, plugin, seed);
            return outcome;
        };
        futures[check.name] = std::async(std::launch::async, run);
    }
    static constexpr const char *words[] = {"passed", "FAILED", "skipped"};
    QTextStream out(stdout);
    int failures = 0;
    for (const Check &check : checks) {
        const Outcome outcome = futures[check.name].get();
        failures += outcome.state == Outcome::Failed ? 1 : 0;
        out << qSetFieldWidth(16) << left << words[outcome.state] << check.name << qSetFieldWidth(0)
            << check.rule << '\n';
        for (const QString &line : outcome.details)
            out << "  " << line << '\n';
        out.flush();
    }
    return failures;
}
