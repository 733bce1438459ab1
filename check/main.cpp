#include "runner.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTextStream>

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>

static constexpr int failed = 1;
static constexpr int badArguments = 2;

static int complain(const QString &sentence, int status)
{
    QTextStream(stderr) << "orvcheck: " << sentence << '\n';
    return status;
}

/// All checks, or those with this name.
static std::vector<Check> checksNamed(const QString &name = {})
{
    std::vector<Check> checks;
    for (const auto &some : {loadingChecks(), lifeChecks(), requestChecks()}) {
        std::copy_if(some.begin(), some.end(), std::back_inserter(checks),
                     [&](const Check &check) { return name.isEmpty() || name == check.name; });
    }
    return checks;
}

/// In the process of a single check: --check NAME PLUGIN SEED.
static int runOne(int &argc, char **argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL); // a panel that hangs does not outlive the checker
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList arguments = QCoreApplication::arguments();
    const std::vector<Check> checks = checksNamed(arguments.at(2));
    if (checks.size() != 1)
        return badArguments;
    checks.front().run({arguments.at(3), std::mt19937(arguments.at(4).toUInt())});
    // Nothing is torn down: what a panel does at the end of a process is no check's subject.
    std::_Exit(0);
}

int main(int argc, char *argv[])
{
    if (argc == 5 && qstrcmp(argv[1], "--check") == 0)
        return runOne(argc, argv);

    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(ORVCHECK_VERSION);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Checks whether a settings-panel plug-in keeps the contract with its host. Each check runs "
        "in a process of its own, where time passes as fast as the panel computes.\n\n"
        "Exit status: 0 if no check failed; 1 if one did, or the results cannot be written; 2 for "
        "bad arguments.");
    parser.addOption({"list", "Print the checks and what they check, and exit."});
    parser.addOption({"only", "Run this check alone. Given several times: these checks.", "name"});
    parser.addOption({"seed", "Repeat the random choices of an earlier run.", "n"});
    parser.addOption({"junit", "Write the results to a file too, as JUnit does.", "file"});
    // Not the parser's own help option: it announces Qt's options, which this program has no use
    // for.
    parser.addOption({{"h", "help"}, "Print this help."});
    parser.addOption({{"v", "version"}, "Print the version."});
    parser.addPositionalArgument("plugin", "The plug-in's file.", "PLUGIN");
    if (!parser.parse(QCoreApplication::arguments()))
        return complain(parser.errorText(), badArguments);
    if (parser.isSet("version"))
        parser.showVersion();
    QTextStream out(stdout);
    if (parser.isSet("help")) {
        out << parser.helpText();
        return 0;
    }
    if (parser.isSet("list")) {
        for (const Check &check : checksNamed())
            out << QString(check.name).leftJustified(16) << check.rule << '\n';
        return 0;
    }

    const QFileInfo plugin(parser.positionalArguments().value(0));
    if (parser.positionalArguments().size() != 1)
        return complain("One plug-in, please; see --help.", badArguments);
    if (!plugin.isFile())
        return complain(QString("There is no file \"%1\".").arg(plugin.filePath()), badArguments);
    std::vector<Check> checks;
    const QStringList names = parser.values("only");
    for (const QString &name : names) {
        const std::vector<Check> found = checksNamed(name);
        if (name.isEmpty() || found.empty())
            return complain(QString("There is no check \"%1\"; see --list.").arg(name),
                            badArguments);
        checks.push_back(found.front());
    }
    bool isNumber = true;
    const quint32 seed = parser.isSet("seed") ? parser.value("seed").toUInt(&isNumber)
                                              : QRandomGenerator::global()->generate();
    if (!isNumber)
        return complain("--seed takes a whole number of 0..4294967295.", badArguments);

    out << "Checking " << plugin.filePath() << ", seed " << seed << '\n' << flush;
    // A relative name would be looked for in Qt's plug-in folders.
    Runner runner(plugin.absoluteFilePath(), QString::number(seed),
                  names.isEmpty() ? checksNamed() : checks);
    QObject::connect(&runner, &Runner::finished, qApp, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    runner.start();
    QCoreApplication::exec();

    const QString junit = parser.value("junit");
    if (parser.isSet("junit") && !runner.writeJUnit(junit))
        return complain(QString("Cannot write \"%1\".").arg(junit), failed);
    return runner.count(Runner::Failed) == 0 ? 0 : failed;
}
