#include "check.h"
#include "host.h"
#include "report.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTextStream>

#include <csignal>
#include <sys/prctl.h>

static int complain(const QString &sentence)
{
    QTextStream(stderr) << "orvcheck: " << sentence << '\n';
    return 2;
}

static std::vector<Check> allChecks()
{
    std::vector<Check> checks;
    for (const auto &group : {loadingChecks(), lifeChecks(), leftoverChecks(), requestChecks()})
        checks.insert(checks.end(), group.begin(), group.end());
    return checks;
}

/// Runs one check in this process: --check NAME PLUGIN SEED.
static int runInThisProcess(int argc, char *argv[])
{
    for (const Check &check : allChecks()) {
        if (argc != 5 || qstrcmp(check.name, argv[2]) != 0)
            continue;
        prctl(PR_SET_PDEATHSIG, SIGKILL); // end this process if orvcheck is killed
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_FONT_DPI", check.dpi);
        // Qt's offscreen platform warns about its limits.
        qputenv("QT_LOGGING_RULES", "default.warning=false");
        const QApplication application(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        const QStringList arguments = QApplication::arguments();
        beginReports();
        Host host(arguments.at(3), arguments.at(4).toUInt());
        check.run(host);
        endReports();
    }
    return complain("--check takes the name of a check, a plug-in and a seed.");
}

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "--check") == 0)
        return runInThisProcess(argc, argv);

    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(ORVCHECK_VERSION);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Checks whether a settings-panel plug-in keeps the contract with its host. Each check runs "
        "in a separate process. The panel's clock is virtual, so checks do not wait for timers.\n\n"
        "To run one check in a debugger: gdb --args orvcheck --check NAME PLUGIN SEED\n\n"
        "Exit status: 0 if no check failed, 1 if one did, 2 for bad arguments.");
    parser.addOptions({
        {"list", "Print the name and the rule of each check, and exit."},
        {"only", "Run only this check. May be given several times.", "name"},
        {"skip", "Do not run this check. May be given several times.", "name"},
        {"seed", "Repeat the random choices of an earlier run.", "n",
         QString::number(QRandomGenerator::global()->generate())},
        // The parser's own help would list Qt's options, which have no effect here.
        {{"h", "help"}, "Print this help."},
        {{"v", "version"}, "Print the version."},
    });
    parser.addPositionalArgument("plugin", "The plug-in's file.", "PLUGIN");
    if (!parser.parse(QCoreApplication::arguments()))
        return complain(parser.errorText());
    if (parser.isSet("version"))
        parser.showVersion();
    if (parser.isSet("help"))
        parser.showHelp();

    QTextStream out(stdout);
    const QStringList only = parser.values("only");
    const QStringList skip = parser.values("skip");
    QStringList unknown = only + skip;
    std::vector<Check> chosen;
    for (const Check &check : allChecks()) {
        if ((only.isEmpty() || only.contains(check.name)) && !skip.contains(check.name))
            chosen.push_back(check);
        unknown.removeAll(check.name);
    }
    if (!unknown.isEmpty())
        return complain(QString("There is no check \"%1\"; see --list.").arg(unknown.first()));
    if (parser.isSet("list")) {
        for (const Check &check : chosen)
            out << QString(check.name).leftJustified(16) << check.rule << '\n';
        return 0;
    }
    const QFileInfo plugin(parser.positionalArguments().value(0));
    if (parser.positionalArguments().size() != 1)
        return complain("Give one plug-in; see --help.");
    if (!plugin.isFile())
        return complain(QString("There is no file \"%1\".").arg(plugin.filePath()));
    bool isNumber = false;
    const quint32 seed = parser.value("seed").toUInt(&isNumber);
    if (!isNumber)
        return complain("--seed takes a whole number from 0 to 4294967295.");

    out << "Checking " << plugin.filePath() << ", seed " << seed << '\n' << flush;
    return runChecks(chosen, plugin.filePath(), seed) ? 0 : 1;
}
