#include "check.h"
#include "runner.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTextStream>

#include <csignal>
#include <cstring>
#include <sys/prctl.h>

namespace {

constexpr int failed = 1;
constexpr int badArguments = 2;

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

int complain(const QString &sentence, int status)
{
    QTextStream(stderr) << "orvcheck: " << sentence << '\n';
    return status;
}

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        latin1("Checks whether a settings-panel plug-in keeps the contract with its host. Each "
               "check runs in "
               "a process of its own; time passes there as fast as the panel computes.\n\n"
               "Exit status: 0 if every check passed, 1 if one failed, 2 for bad arguments."));
    parser.addOption({latin1("list"), latin1("Print the checks and what they check, and exit.")});
    parser.addOption({latin1("only"), latin1("Run this check alone; may be given several times."),
                      latin1("name")});
    parser.addOption(
        {latin1("seed"), latin1("Repeat the random choices of an earlier run."), latin1("n")});
    parser.addOption(
        {latin1("junit"), latin1("Write the results to a file, as JUnit does."), latin1("file")});
    // Not the parser's own help option: it announces Qt's options, which this program refuses.
    parser.addOption({{latin1("h"), latin1("help")}, latin1("Print this help.")});
    parser.addOption({{latin1("v"), latin1("version")}, latin1("Print the version.")});
    parser.addPositionalArgument(latin1("plugin"), latin1("The plug-in's file."), latin1("PLUGIN"));
}

/// The process of a single check: --check NAME PLUGIN SEED.
int runOne(int &argc, char **argv)
{
    const Check *const check = findCheck(QString::fromLocal8Bit(argv[2]));
    if (!check)
        return badArguments;
    prctl(PR_SET_PDEATHSIG, SIGKILL); // a panel that hangs does not outlive the checker
    const Task task{QString::fromLocal8Bit(argv[3]), QByteArray(argv[4]).toUInt()};
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    runCheck(*check, task);
}

int runAll(const QCommandLineParser &parser)
{
    QTextStream out(stdout);
    if (parser.isSet(latin1("help")) || parser.isSet(latin1("version"))) {
        out << (parser.isSet(latin1("help")) ? parser.helpText()
                                             : latin1("orvcheck " ORVCHECK_VERSION "\n"));
        return 0;
    }
    const std::vector<Check> all = allChecks();
    if (parser.isSet(latin1("list"))) {
        for (const Check &check : all)
            out << latin1(check.name).leftJustified(16) << check.rule << '\n';
        return 0;
    }

    const QStringList files = parser.positionalArguments();
    if (files.size() != 1)
        return complain(latin1("One plug-in, please; see --help."), badArguments);
    if (!QFileInfo(files.first()).isFile())
        return complain(latin1("There is no file \"%1\".").arg(files.first()), badArguments);
    std::vector<const Check *> chosen;
    const QStringList names = parser.values(latin1("only"));
    for (const QString &name : names) {
        chosen.push_back(findCheck(name));
        if (!chosen.back())
            return complain(latin1("There is no check \"%1\"; see --list.").arg(name),
                            badArguments);
    }
    if (chosen.empty()) {
        for (const Check &check : all)
            chosen.push_back(&check);
    }
    bool isNumber = true;
    const quint32 seed = parser.isSet(latin1("seed"))
                             ? parser.value(latin1("seed")).toUInt(&isNumber)
                             : QRandomGenerator::global()->generate();
    if (!isNumber)
        return complain(latin1("--seed takes a whole number of 0..4294967295."), badArguments);

    out << "Checking " << files.first() << ", seed " << seed << '\n' << flush;
    Runner runner(files.first(), seed, chosen);
    QObject::connect(&runner, &Runner::finished, qApp, &QCoreApplication::quit);
    runner.start();
    QCoreApplication::exec();

    const QString junit = parser.value(latin1("junit"));
    if (parser.isSet(latin1("junit")) && !runner.writeJUnit(junit))
        return complain(latin1("Cannot write \"%1\".").arg(junit), failed);
    return runner.failures() == 0 ? 0 : failed;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 5 && std::strcmp(argv[1], "--check") == 0)
        return runOne(argc, argv);
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QCoreApplication::arguments()))
        return complain(parser.errorText(), badArguments);
    return runAll(parser);
}
