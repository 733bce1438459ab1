#include "runner.h"

#include "check.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSaveFile>
#include <QTextStream>
#include <QThread>
#include <QTimer>
#include <QXmlStreamWriter>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>

namespace {

using namespace std::chrono_literals;

constexpr auto timeLimit = 15s;

/// Most of a check's time is spent computing, but one that hangs may hang asleep.
int sideBySide()
{
    return std::max(4, QThread::idealThreadCount());
}

} // namespace

Runner::Runner(QString plugin, quint32 seed, const std::vector<const Check *> &checks)
    : m_plugin(std::move(plugin))
    , m_seed(seed)
{
    for (const Check *const check : checks)
        m_outcomes.emplace_back(check);
}

void Runner::start()
{
    QTimer::singleShot(0, this, &Runner::startMore);
}

int Runner::failures() const
{
    return static_cast<int>(
        std::count_if(m_outcomes.begin(), m_outcomes.end(),
                      [](const Outcome &outcome) { return outcome.state == Outcome::Failed; }));
}

void Runner::startMore()
{
    auto running = std::count_if(m_outcomes.begin(), m_outcomes.end(), [](const Outcome &outcome) {
        return outcome.state == Outcome::Running;
    });
    for (Outcome &outcome : m_outcomes) {
        if (outcome.state != Outcome::Due)
            continue;
        // A check that was not asked for is taken to pass.
        const auto needed =
            std::find_if(m_outcomes.begin(), m_outcomes.end(), [&](const Outcome &other) {
                return std::strcmp(other.check->name, outcome.check->needs) == 0;
            });
        const auto state = needed == m_outcomes.end() ? Outcome::Passed : needed->state;
        if (state == Outcome::Failed || state == Outcome::Skipped) {
            outcome.state = Outcome::Skipped;
        } else if (state == Outcome::Passed && running < sideBySide()) {
            run(outcome);
            ++running;
        }
    }
    printWhatIsOver();
    if (running == 0)
        Q_EMIT finished();
}

void Runner::run(Outcome &outcome)
{
    outcome.state = Outcome::Running;
    outcome.time.start();
    auto *const process = new QProcess(this);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_FONT_DPI"), QString::number(outcome.check->dotsPerInch));
    // Of the platform's limits, which are not the panel's.
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("default.warning=false"));
    process->setProcessEnvironment(environment);
    auto *const limit = new QTimer(process);
    limit->setSingleShot(true);
    connect(limit, &QTimer::timeout, process,
            [this, &outcome, process] { end(outcome, *process, true); });
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), limit,
            [this, &outcome, process] { end(outcome, *process, false); });
    process->start(QCoreApplication::applicationFilePath(),
                   {QStringLiteral("--check"), QString::fromLatin1(outcome.check->name), m_plugin,
                    QString::number(m_seed)});
    limit->start(timeLimit);
}

void Runner::readReport(Outcome &outcome, QProcess &process)
{
    outcome.expected.clear();
    const QStringList lines =
        QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString text = line.section(QStringLiteral(": "), 1);
        if (line.startsWith(QLatin1String("expected: ")))
            outcome.expected = text;
        else if (line.startsWith(QLatin1String("came: ")))
            outcome.came = text;
        else if (line.startsWith(QLatin1String("step: ")))
            outcome.lastStep = text;
    }
    outcome.said = QString::fromLocal8Bit(process.readAllStandardError())
                       .trimmed()
                       .section(QLatin1Char('\n'), -1);
}

void Runner::end(Outcome &outcome, QProcess &process, bool timedOut)
{
    disconnect(&process, nullptr, nullptr, nullptr);
    if (timedOut) {
        process.kill();
        process.waitForFinished();
    }
    readReport(outcome, process);
    outcome.duration = outcome.time.elapsed();
    const bool crashed = process.exitStatus() == QProcess::CrashExit;
    const bool passed = !timedOut && !crashed && process.exitCode() == 0;
    if (!passed && outcome.expected.isEmpty()) {
        outcome.expected = QStringLiteral("an end of the check");
        outcome.came = timedOut  ? QStringLiteral("none within %1 s").arg(timeLimit / 1s)
                       : crashed ? QStringLiteral("a crash (%1)")
                                       .arg(QString::fromLocal8Bit(strsignal(process.exitCode())))
                                 : QStringLiteral("exit status %1").arg(process.exitCode());
        if (!outcome.said.isEmpty() && !timedOut)
            outcome.came += QStringLiteral(", after \"%1\"").arg(outcome.said);
    }
    if (!outcome.expected.isEmpty() && !outcome.lastStep.isEmpty())
        outcome.came += QStringLiteral("; at: ") + outcome.lastStep;
    outcome.state = passed                                      ? Outcome::Passed
                    : ++outcome.failures < outcome.check->tries ? Outcome::Due
                                                                : Outcome::Failed;
    process.deleteLater();
    startMore();
}

void Runner::printWhatIsOver()
{
    QTextStream out(stdout);
    for (; m_printed < m_outcomes.size(); ++m_printed) {
        const Outcome &outcome = m_outcomes.at(m_printed);
        if (outcome.state == Outcome::Due || outcome.state == Outcome::Running)
            return;
        const char *const word = outcome.state == Outcome::Passed   ? "passed"
                                 : outcome.state == Outcome::Failed ? "FAILED"
                                                                    : "skipped";
        out << QString::fromLatin1(word).leftJustified(8)
            << QString::fromLatin1(outcome.check->name).leftJustified(16) << outcome.check->rule
            << '\n';
        if (outcome.state == Outcome::Failed)
            out << "        expected: " << outcome.expected
                << "\n        came:     " << outcome.came << '\n';
        if (outcome.state == Outcome::Skipped)
            out << "        needs:    " << outcome.check->needs << '\n';
        out.flush();
    }
}

bool Runner::writeJUnit(const QString &file) const
{
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly))
        return false;
    const auto skipped =
        std::count_if(m_outcomes.begin(), m_outcomes.end(),
                      [](const Outcome &outcome) { return outcome.state == Outcome::Skipped; });
    QXmlStreamWriter xml(&target);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("orvcheck ") + m_plugin);
    xml.writeAttribute(QStringLiteral("tests"), QString::number(m_outcomes.size()));
    xml.writeAttribute(QStringLiteral("failures"), QString::number(failures()));
    xml.writeAttribute(QStringLiteral("skipped"), QString::number(skipped));
    for (const Outcome &outcome : m_outcomes) {
        xml.writeStartElement(QStringLiteral("testcase"));
        xml.writeAttribute(QStringLiteral("classname"), QStringLiteral("orvcheck"));
        xml.writeAttribute(QStringLiteral("name"), QString::fromLatin1(outcome.check->name));
        xml.writeAttribute(QStringLiteral("time"),
                           QString::number(static_cast<double>(outcome.duration) / 1000));
        if (outcome.state == Outcome::Failed) {
            xml.writeStartElement(QStringLiteral("failure"));
            xml.writeAttribute(
                QStringLiteral("message"),
                QStringLiteral("expected: %1; came: %2").arg(outcome.expected, outcome.came));
            xml.writeEndElement();
        } else if (outcome.state == Outcome::Skipped) {
            xml.writeEmptyElement(QStringLiteral("skipped"));
        }
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return target.commit();
}
