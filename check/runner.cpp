#include "check.h"

#include <QCoreApplication>
#include <QMap>
#include <QProcess>
#include <QTextStream>

#include <cstring>

/// Returns nothing if the check passed, else what was expected and what came instead.
static QStringList runInProcess(const Check &check, const QString &plugin, quint32 seed)
{
    const int customLimit = qEnvironmentVariableIntValue("ORVCHECK_TIME_LIMIT");
    const int timeLimit = customLimit > 0 ? customLimit : 30; // s
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {"--check", check.name, plugin, QString::number(seed)});
    QString end;
    if (!process.waitForFinished(timeLimit * 1000))
        end = QString("none within %1 s").arg(timeLimit);
    else if (process.exitStatus() == QProcess::CrashExit)
        end = QString("a crash (%1)").arg(strsignal(process.exitCode()));
    else
        end = QString("an exit with status %1").arg(process.exitCode());
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
    }
    if (reports.contains("step"))
        reports["came"] += "; at: " + reports["step"];
    return {"expected: " + reports["expected"], "came:     " + reports["came"]};
}

bool runChecks(const std::vector<Check> &checks, const QString &plugin, quint32 seed)
{
    QTextStream out(stdout);
    QStringList notPassed;
    bool failed = false;
    for (const Check &check : checks) {
        QStringList details;
        const char *result = "passed";
        if (notPassed.contains(check.needs)) {
            result = "skipped";
            details = QStringList{QString("needs:    ") + check.needs};
        } else {
            for (int tries = 0; tries == 0 || (tries < check.tries && !details.isEmpty()); ++tries)
                details = runInProcess(check, plugin, seed);
            if (!details.isEmpty()) {
                result = "FAILED";
                failed = true;
            }
        }
        out << qSetFieldWidth(16) << left << result << check.name << qSetFieldWidth(0) << check.rule
            << '\n';
        if (!details.isEmpty()) {
            notPassed += check.name;
            out << "  " << details.join("\n  ") << '\n';
        }
        out.flush();
    }
    return !failed;
}
