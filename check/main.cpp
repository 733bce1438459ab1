#include "runner.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTextStream>

#include <algorithm>

static constexpr int failed = 1;
static constexpr int badArguments = 2;

static int complain(const QString &sentence, int status = badArguments)
{
    QTextStream(stderr) << "orvcheck: " << sentence << '\n';
    return status;
}

/// Those with these names, or all.
static std::vector<Check> checksNamed(const QStringList &names)
{
    std::vector<Check> checks;
    for (const auto &some : {loadingChecks(), lifeChecks(), requestChecks()}) {
        std::copy_if(some.begin(), some.end(), std::back_inserter(checks), [&](const Check &check) {
            return names.isEmpty() || names.contains(check.name);
        });
    }
    return checks;
}

int main(int argc, char *argv[])
{
    // In the process of a single check: --check NAME PLUGIN SEED.
    if (argc == 5 && qstrcmp(argv[1], "--check") == 0) {
        const QApplication application(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        const QStringList arguments = QCoreApplication::arguments();
        for (const Check &check : checksNamed({arguments.at(2)}))
            runHere(check, arguments.at(3), arguments.at(4).toUInt());
        return badArguments;
    }

    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(ORVCHECK_VERSION);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Checks whether a settings-panel plug-in keeps the contract with its host. Each check runs "
        "in a process of its own, where time passes as fast as the panel computes.\n\n"
        "Exit status: 0 if no check failed; 1 if one did, or the results cannot be written; 2 for "
        "bad arguments.");
    parser.addOptions({
        {"list", "Print the checks and what they check, and exit."},
        {"only", "Run this check alone. Given several times: these checks.", "name"},
        {"seed", "Repeat the random choices of an earlier run.", "n"},
        {"junit", "Write the results to a file too, as JUnit does.", "file"},
        // Not the parser's own: its help announces Qt's options, which are of no use here.
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
    if (parser.isSet("list")) {
        for (const Check &check : checksNamed({}))
            out << QString(check.name).leftJustified(16) << check.rule << '\n';
        return 0;
    }

    const QFileInfo plugin(parser.positionalArguments().value(0));
    if (parser.positionalArguments().size() != 1)
        return complain("One plug-in, please; see --help.");
    if (!plugin.isFile())
        return complain(QString("There is no file \"%1\".").arg(plugin.filePath()));
    const QStringList names = parser.values("only");
    for (const QString &name : names) {
        if (checksNamed({name}).empty())
            return complain(QString("There is no check \"%1\"; see --list.").arg(name));
    }
    bool isNumber = true;
    const quint32 seed = parser.isSet("seed") ? parser.value("seed").toUInt(&isNumber)
                                              : QRandomGenerator::global()->generate();
    if (!isNumber)
        return complain("--seed takes a whole number of 0..4294967295.");
    QFile junit(parser.value("junit"));
    if (parser.isSet("junit") && !junit.open(QIODevice::WriteOnly))
        return complain(QString("Cannot write \"%1\".").arg(junit.fileName()));

    out << "Checking " << plugin.filePath() << ", seed " << seed << '\n' << flush;
    // A relative name would be looked for in Qt's plug-in folders.
    const int failures = runChecks(checksNamed(names), plugin.absoluteFilePath(), seed, junit);
    junit.close();
    if (junit.error() != QFileDevice::NoError)
        return complain(QString("Cannot write \"%1\".").arg(junit.fileName()), failed);
    return failures == 0 ? 0 : failed;
}
