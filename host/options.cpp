#include "options.h"

#include "faultkinds.h"

#include <QCommandLineParser>

namespace {

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

void addOptions(QCommandLineParser &parser)
{
    static constexpr struct
    {
        const char *name;
        const char *value;
        const char *byDefault;
        const char *description;
    } options[] = {
        {"language", "en|zh", "en", "The host's language: en (default) or zh."},
        {"status", "b0,b1,b2,b3,b4", "0,1,0,1,0",
         "The camera's status block at start: reserved, tracking, type, mode, composition, each "
         "0..255. Default: 0,1,0,1,0."},
        {"fault", "name[=value]", "",
         "What is wrong with the simulated camera, any number of times: delay=MS, no-answer, "
         "errno=NAME, short=BYTES, random, refuse-writes, unplugged, changes-itself."},
        {"no-answer", "", "", "The same as --fault no-answer."},
        {"delay", "ms", "0", "The same as --fault delay=MS, 0..10000. Default: 0."},
        {"camera", "node", "", "Use a real camera, such as /dev/video0, not the simulated one."},
        {"unit", "n", "1",
         "The number of the real camera's extension unit, 1..255. Default: the "
         "one that is found."},
        {"read-only", "", "", "Send the real camera no command."},
        {"list-cameras", "", "", "Print the cameras that there are and exit."},
        {"trace", "file", "", "Write every exchange to a file, a JSON object a line."},
        {"dpi", "n", "96", "The screen's logical dots per inch, 48..480."},
        {"scale", "f", "1", "Qt's scale factor, 0.5..4."},
        {"tour", "", "",
         "Work every control, print each exchange in words and exit: with 0 if camera and panel "
         "agreed all the way, else with 1."},
        {"gallery", "", "",
         "Open a window with every widget of the toolkit in each of its states instead of a "
         "plug-in's panel."},
        {"picture", "file", "", "The picture that the gallery shows. Default: one of its own."},
        {"pictures", "folder", "",
         "Write a picture of each widget of the gallery into this folder and exit."},
        {"screenshot", "file", "",
         "Write a picture of the window, after the tour if there is one, and exit."},
    };
    parser.setApplicationDescription(latin1("Loads a settings-panel plug-in and gives it a camera "
                                            "to work on: a simulated one, or one of "
                                            "yours.\n\n"
                                            "Exit status: 0 if all went well; 1 if a plug-in or "
                                            "camera cannot be used, a file cannot be written, or "
                                            "the tour found a difference; 2 for bad arguments."));
    for (const auto &option : options) {
        parser.addOption({latin1(option.name), latin1(option.description), latin1(option.value),
                          latin1(option.byDefault)});
    }
    // Not the parser's own help option: it announces Qt's options, which this program refuses.
    parser.addOption({{latin1("h"), latin1("help")}, latin1("Print this help.")});
    parser.addOption({{latin1("v"), latin1("version")}, latin1("Print the version.")});
    parser.addPositionalArgument(
        latin1("plugin"),
        latin1("The plug-in's file. Default: the one that goes with this program."),
        latin1("[PLUGIN]"));
}

} // namespace

Options Options::read(const QStringList &arguments)
{
    Options options;
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) {
        options.error = parser.errorText();
        return options;
    }

    const auto isSet = [&](const char *name) {
        return parser.isSet(latin1(name));
    };
    const auto reject = [&](const char *name, const char *wanted) {
        options.error = QStringLiteral("--%1 takes %2, not \"%3\".")
                            .arg(latin1(name), latin1(wanted), parser.value(latin1(name)));
    };
    const auto whole = [&](const char *name, int minimum, int maximum, const char *wanted) {
        bool ok = false;
        const int number = parser.value(latin1(name)).toInt(&ok);
        if (!ok || number < minimum || number > maximum)
            reject(name, wanted);
        return number;
    };

    const QString language = parser.value(latin1("language"));
    options.language = language == QLatin1String("en") ? 1 : 0;
    if (options.language == 0 && language != QLatin1String("zh"))
        reject("language", "en or zh");

    const QStringList bytes = parser.value(latin1("status")).split(QLatin1Char(','));
    bool bytesOk = bytes.size() == static_cast<int>(options.status.size());
    for (int i = 0; bytesOk && i < bytes.size(); ++i) {
        const uint byte = bytes.at(i).toUInt(&bytesOk);
        bytesOk = bytesOk && byte <= 255;
        options.status.at(i) = static_cast<quint8>(byte);
    }
    if (!bytesOk)
        reject("status", "five numbers of 0..255 with commas between them");

    if (isSet("no-answer"))
        options.faults[Fault::NoAnswer] = 1;
    const int delay = whole("delay", 0, 10000, "a whole number of milliseconds, 0..10000");
    if (isSet("delay"))
        options.faults[Fault::Delay] = delay;
    const QStringList faults = parser.values(latin1("fault"));
    for (const QString &fault : faults) {
        const QString wanted = addFault(options.faults, fault);
        if (!wanted.isEmpty())
            options.error = QStringLiteral("--fault takes %1, not \"%2\".").arg(wanted, fault);
    }

    const auto file = [&](const char *name, const char *wanted = "the name of a file") {
        QString value = parser.value(latin1(name));
        if (isSet(name) && value.isEmpty())
            reject(name, wanted);
        return value;
    };
    options.camera = file("camera", "the node of a camera, such as /dev/video0");
    const int unit = whole("unit", 1, 255, "a whole number of 1..255");
    if (isSet("unit"))
        options.unit = unit;
    options.readOnly = isSet("read-only");
    options.listCameras = isSet("list-cameras");
    options.trace = file("trace");
    const int dotsPerInch = whole("dpi", 48, 480, "a whole number of 48..480");
    if (isSet("dpi"))
        options.dotsPerInch = QByteArray::number(dotsPerInch);

    bool scaleOk = false;
    const double scaleFactor = parser.value(latin1("scale")).toDouble(&scaleOk);
    if (!scaleOk || !(scaleFactor >= 0.5 && scaleFactor <= 4))
        reject("scale", "a number of 0.5..4");
    if (isSet("scale"))
        options.scaleFactor = QByteArray::number(scaleFactor);

    options.tour = isSet("tour");
    options.gallery = isSet("gallery");
    options.picture = file("picture");
    options.pictures = file("pictures", "the name of a folder");
    options.screenshot = file("screenshot");
    options.help = isSet("help");
    options.version = isSet("version");

    options.plugin = parser.positionalArguments().value(0);
    if (parser.positionalArguments().size() > 1)
        options.error = QStringLiteral("Only one plug-in can be loaded.");
    if (options.gallery && !options.plugin.isEmpty())
        options.error = QStringLiteral("--gallery takes no plug-in.");
    if (options.gallery && options.tour)
        options.error = QStringLiteral("--gallery and --tour exclude each other.");
    const auto need = [&](const char *name, const char *other) {
        if (isSet(name) && !isSet(other))
            options.error = QStringLiteral("--%1 needs --%2.").arg(latin1(name), latin1(other));
    };
    need("picture", "gallery");
    need("pictures", "gallery");
    need("unit", "camera");
    need("read-only", "camera");
    for (const char *other : {"fault", "status", "gallery", "delay", "no-answer"}) {
        if (isSet("camera") && isSet(other))
            options.error =
                QStringLiteral("--camera and --%1 exclude each other.").arg(latin1(other));
    }
    return options;
}

QString Options::helpText()
{
    QCommandLineParser parser;
    addOptions(parser);
    return parser.helpText();
}
