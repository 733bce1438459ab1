#include "runner.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSaveFile>
#include <QTextStream>
#include <QThread>
#include <QTimer>
#include <QXmlStreamWriter>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>

using namespace std::chrono_literals;

static constexpr auto timeLimit = 15s;

// What a check reports, on standard output, among what the panel may write there.
static constexpr char expectedMark[] = "orvcheck expected: ";
static constexpr char cameMark[] = "orvcheck came: ";
static constexpr char stepMark[] = "orvcheck step: ";

static void report(const char *mark, const QString &text)
{
    std::fprintf(stdout, "\n%s%s\n", mark, qUtf8Printable(text.simplified()));
    std::fflush(stdout);
}

void expect(bool kept, const QString &expected, const QString &came)
{
    if (kept)
        return;
    report(expectedMark, expected);
    report(cameMark, came);
    std::_Exit(1);
}

void step(const QString &what)
{
    report(stepMark, what);
}

Runner::Runner(QString plugin, QString seed, const std::vector<Check> &checks)
    : m_plugin(std::move(plugin))
    , m_seed(std::move(seed))
{
    for (const Check &check : checks) {
        m_outcomes.emplace_back();
        m_outcomes.back().check = check;
    }
}

int Runner::count(int state) const
{
    return static_cast<int>(std::count_if(m_outcomes.begin(), m_outcomes.end(),
                                          [=](const Outcome &one) { return one.state == state; }));
}

void Runner::start()
{
    // One that hangs may hang asleep, so there may be more of them than processors.
    const int sideBySide = std::max(4, QThread::idealThreadCount());
    for (Outcome &outcome : m_outcomes) {
        if (outcome.state != Due)
            continue;
        State needed = Passed;
        for (const Outcome &other : m_outcomes) {
            if (std::strcmp(other.check.name, outcome.check.needs) == 0)
                needed = other.state;
        }
        if (needed == Failed || needed == Skipped)
            outcome.state = Skipped;
        else if (needed == Passed && count(Running) < sideBySide)
            run(outcome);
    }
    print();
    if (count(Running) == 0)
        Q_EMIT finished();
}

void Runner::run(Outcome &outcome)
{
    outcome.state = Running;
    outcome.time.start();
    auto *const process = new QProcess(this);
    process->setProcessChannelMode(QProcess::MergedChannels);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_FONT_DPI", outcome.check.dpi);
    environment.insert("QT_LOGGING_RULES", "default.warning=false"); // of that platform's limits
    process->setProcessEnvironment(environment);
    const auto over = qOverload<int, QProcess::ExitStatus>(&QProcess::finished);
    connect(process, over, this, [this, &outcome, process] { end(outcome, *process, true); });
    QTimer::singleShot(timeLimit, process,
                       [this, &outcome, process] { end(outcome, *process, false); });
    process->start(QCoreApplication::applicationFilePath(),
                   {"--check", outcome.check.name, m_plugin, m_seed});
}

void Runner::end(Outcome &outcome, QProcess &process, bool isOver)
{
    process.disconnect(this);
    if (!isOver) {
        process.kill();
        process.waitForFinished();
    }
    outcome.duration = outcome.time.elapsed();
    const bool crashed = process.exitStatus() == QProcess::CrashExit;
    outcome.expected = "an end of the check";
    outcome.came = !isOver   ? QString("none within %1 s").arg(timeLimit / 1s)
                   : crashed ? QString("a crash (%1)").arg(strsignal(process.exitCode()))
                             : QString("exit status %1").arg(process.exitCode());
    QString lastStep;
    QString lastWords;
    const QStringList lines = QString(process.readAll()).split('\n');
    for (const QString &line : lines) {
        const QString text = line.section(": ", 1);
        if (line.startsWith(expectedMark))
            outcome.expected = text;
        else if (line.startsWith(cameMark))
            outcome.came = text;
        else if (line.startsWith(stepMark))
            lastStep = text;
        else if (!line.isEmpty())
            lastWords = line;
    }
    if (crashed && isOver && !lastWords.isEmpty())
        outcome.came += ", after \"" + lastWords + '"';
    if (!lastStep.isEmpty())
        outcome.came += "; at: " + lastStep;
    if (isOver && !crashed && process.exitCode() == 0)
        outcome.state = Passed;
    else
        outcome.state = ++outcome.tries < outcome.check.tries ? Due : Failed;
    process.deleteLater();
    start();
}

void Runner::print()
{
    QTextStream out(stdout);
    static constexpr const char *words[] = {"", "", "passed", "FAILED", "skipped"};
    for (; m_printed < m_outcomes.size() && m_outcomes.at(m_printed).state >= Passed; ++m_printed) {
        const Outcome &outcome = m_outcomes.at(m_printed);
        out << qSetFieldWidth(16) << left << words[outcome.state] << outcome.check.name
            << qSetFieldWidth(0) << outcome.check.rule << '\n';
        if (outcome.state == Failed)
            out << "  expected: " << outcome.expected << "\n  came:     " << outcome.came << '\n';
        else if (outcome.state == Skipped)
            out << "  needs:    " << outcome.check.needs << '\n';
    }
}

bool Runner::writeJUnit(const QString &file) const
{
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly))
        return false;
    QXmlStreamWriter xml(&target);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("testsuite");
    xml.writeAttribute("name", "orvcheck " + m_plugin);
    xml.writeAttribute("tests", QString::number(m_outcomes.size()));
    xml.writeAttribute("failures", QString::number(count(Failed)));
    xml.writeAttribute("skipped", QString::number(count(Skipped)));
    for (const Outcome &outcome : m_outcomes) {
        xml.writeStartElement("testcase");
        xml.writeAttribute("classname", "orvcheck");
        xml.writeAttribute("name", outcome.check.name);
        xml.writeAttribute("time", QString::number(static_cast<double>(outcome.duration) / 1000));
        if (outcome.state == Failed) {
            xml.writeStartElement("failure");
            xml.writeAttribute("message",
                               "expected: " + outcome.expected + "; came: " + outcome.came);
            xml.writeEndElement();
        } else if (outcome.state == Skipped) {
            xml.writeEmptyElement("skipped");
        }
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return target.commit();
}
