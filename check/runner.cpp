#include "runner.h"

#include "host.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSemaphore>
#include <QTextStream>
#include <QThread>
#include <QXmlStreamWriter>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <future>
#include <sys/prctl.h>
#include <unistd.h>

using namespace std::chrono_literals;

static constexpr auto timeLimit = 30s;

/// In the process of a check: where it reports, a line each, "word text".
static int reports = STDOUT_FILENO;

static void report(const char *word, const QString &text = {})
{
    dprintf(reports, "%s %s\n", word, qUtf8Printable(text.simplified()));
}

void expect(bool kept, const QString &expected, const QString &came)
{
    if (kept)
        return;
    report("expected", expected);
    report("came", came);
    std::_Exit(1);
}

void step(const QString &what)
{
    report("step", what);
}

void runHere(const Check &check, const QString &plugin, quint32 seed)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL); // a panel that hangs does not outlive the checker
    // What the panel prints is not to be taken for a report, nor its exit for the end of the check.
    reports = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    Host host(plugin, seed);
    check.run(host);
    report("passed");
    // Nothing is torn down: what a panel does at the end of a process is no check's subject.
    std::_Exit(0);
}

/// What came of a check.
struct Outcome
{
    enum State { Passed, Failed, Skipped };

    State state = Skipped;
    QStringList details; ///< why it has not passed, for the user
    qint64 duration = 0; ///< ms
};

/// On one line, without what neither a terminal nor XML can show.
static QString printable(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return !c.isPrint() && !c.isSpace(); }, '?');
    return text.simplified();
}

static Outcome runInProcess(const Check &check, const QString &plugin, quint32 seed)
{
    QElapsedTimer time;
    time.start();
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_FONT_DPI", check.dpi);
    environment.insert("QT_LOGGING_RULES", "default.warning=false"); // of that platform's limits
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  {"--check", check.name, plugin, QString::number(seed)});
    QByteArray words;
    // In short waits, for a panel may print without end.
    while (process.state() != QProcess::NotRunning && !time.hasExpired(timeLimit / 1ms)) {
        process.waitForFinished(100);
        words = (words + process.readAllStandardError()).right(1000);
    }
    const bool hangs = process.state() != QProcess::NotRunning;
    process.kill();
    process.waitForFinished();

    QMap<QString, QString> said;
    const auto lines = QString(process.readAllStandardOutput()).split('\n');
    for (const QString &line : lines)
        said[line.section(' ', 0, 0)] = line.section(' ', 1);
    if (said.contains("passed"))
        return {Outcome::Passed, {}, time.elapsed()};
    if (!said.contains("expected")) {
        said["expected"] = "an end of the check";
        said["came"] = hangs ? QString("none within %1 s").arg(timeLimit / 1s)
                       : process.exitStatus() == QProcess::CrashExit
                           ? QString("a crash (%1)").arg(strsignal(process.exitCode()))
                           : QString("an exit with status %1").arg(process.exitCode());
        const QByteArray lastLine = words.trimmed().split('\n').constLast();
        if (!lastLine.isEmpty())
            said["came"] += ", after \"" + lastLine + '"';
    }
    if (said.contains("step"))
        said["came"] += "; at: " + said["step"];
    return {Outcome::Failed,
            {"expected: " + printable(said["expected"]), "came:     " + printable(said["came"])},
            time.elapsed()};
}

static void writeJUnit(QFile &file, const QString &plugin, const std::vector<Check> &checks,
                       const std::vector<Outcome> &outcomes, int failures)
{
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("testsuite");
    xml.writeAttribute("name", "orvcheck " + printable(plugin));
    xml.writeAttribute("tests", QString::number(checks.size()));
    xml.writeAttribute("failures", QString::number(failures));
    for (std::size_t i = 0; i < checks.size(); ++i) {
        xml.writeStartElement("testcase");
        xml.writeAttribute("classname", "orvcheck");
        xml.writeAttribute("name", checks[i].name);
        xml.writeAttribute("time",
                           QString::number(static_cast<double>(outcomes[i].duration) / 1000));
        if (outcomes[i].state != Outcome::Passed) {
            xml.writeEmptyElement(outcomes[i].state == Outcome::Failed ? "failure" : "skipped");
            xml.writeAttribute("message", outcomes[i].details.join("; ").simplified());
        }
        xml.writeEndElement();
    }
    xml.writeEndDocument();
}

int runChecks(const std::vector<Check> &checks, const QString &plugin, quint32 seed, QFile &junit)
{
    // One that hangs may hang asleep, so there may be more of them than processors.
    QSemaphore sideBySide(std::max(4, QThread::idealThreadCount()));
    QMap<QString, std::shared_future<Outcome>> futures;
    for (const Check &check : checks) {
        const auto run = [&, needed = futures.value(check.needs)]() -> Outcome {
            if (needed.valid() && needed.get().state != Outcome::Passed)
                return {Outcome::Skipped, {QString("needs:    ") + check.needs}};
            sideBySide.acquire();
            const QSemaphoreReleaser place(sideBySide);
            Outcome outcome;
            for (int tries = 0; tries < check.tries && outcome.state != Outcome::Passed; ++tries)
                outcome = runInProcess(check, plugin, seed);
            return outcome;
        };
        futures[check.name] = std::async(std::launch::async, run);
    }
    static constexpr const char *words[] = {"passed", "FAILED", "skipped"};
    QTextStream out(stdout);
    std::vector<Outcome> outcomes;
    int failures = 0;
    for (const Check &check : checks) {
        outcomes.push_back(futures[check.name].get());
        const Outcome &outcome = outcomes.back();
        failures += outcome.state == Outcome::Failed ? 1 : 0;
        out << qSetFieldWidth(16) << left << words[outcome.state] << check.name << qSetFieldWidth(0)
            << check.rule << '\n';
        for (const QString &line : outcome.details)
            out << "  " << line << '\n';
        out.flush();
    }
    if (junit.isOpen())
        writeJUnit(junit, plugin, checks, outcomes, failures);
    return failures;
}
