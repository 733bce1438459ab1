#include "options.h"

#include "faultkinds.h"

#include <QCommandLineParser>

namespace {

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        "Loads a settings-panel plug-in and connects it to a simulated or a real camera.\n\n"
        "Exit status: 0 on success; 1 if a plug-in or camera cannot be used, a file cannot be "
        "written, or the tour found a difference; 2 for bad arguments.\n\n"
        "Set the environment variables QT_FONT_DPI and QT_SCALE_FACTOR to try other screen "
        "densities.");
    parser.addOptions({
        {"language", "The host's language: en (default) or zh.", "en|zh", "en"},
        {"status",
         "Initial status bytes of the simulated camera: reserved, tracking, type, mode, "
         "composition, each 0 to 255. Default: 0,1,0,1,0.",
         "b0,b1,b2,b3,b4", "0,1,0,1,0"},
        {"fault",
         "Give the simulated camera a fault. May be given several times. One of " + faultUsage() +
             '.',
         "name[=value]"},
        {"camera", "Use the real camera at this node, such as /dev/video0.", "node"},
        {"unit",
         "Number of the real camera's extension unit, 1 to 255. Default: found automatically.",
         "n"},
        {"read-only", "Do not send commands to the real camera."},
        {"list-cameras", "List the connected cameras and exit."},
        {"trace", "Write every exchange with the panel to a file, one JSON object per line.",
         "file"},
        {"tour",
         "Operate every control, print each exchange and exit. Exit status 0: camera and panel "
         "agreed after every step; 1: they did not."},
        {"screenshot",
         "Write a picture of the window to a file and exit. With --tour: after the tour.", "file"},
        // The parser's own help option would list Qt's options, which this program rejects.
        {{"h", "help"}, "Print this help."},
        {{"v", "version"}, "Print the version."},
    });
    parser.addPositionalArgument(
        "plugin", "The plug-in's file. Default: the plug-in supplied with this program.",
        "[PLUGIN]");
}

/// Returns a description of valid input, or an empty string if `text` is valid.
QString readStatus(const QString &text, TrackingProtocol::Status &status)
{
    const QStringList bytes = text.split(',');
    bool ok = bytes.size() == int(status.size());
    for (int i = 0; ok && i < bytes.size(); ++i) {
        const uint byte = bytes[i].toUInt(&ok);
        ok = ok && byte <= 255;
        status.at(i) = quint8(byte);
    }
    return ok ? QString() : "five numbers from 0 to 255, separated by commas";
}

/// Says in a sentence which arguments do not go together; empty if all do.
QString conflict(const QCommandLineParser &parser)
{
    for (const char *const name : {"unit", "read-only"}) {
        if (parser.isSet(name) && !parser.isSet("camera"))
            return QString("--%1 needs --camera.").arg(name);
    }
    for (const char *const name : {"fault", "status"}) {
        if (parser.isSet(name) && parser.isSet("camera"))
            return QString("--camera and --%1 cannot be combined.").arg(name);
    }
    if (parser.positionalArguments().size() > 1)
        return "Only one plug-in can be loaded.";
    return {};
}

} // namespace

Options Options::read(const QStringList &arguments)
{
    Options options;
    QCommandLineParser parser;
    addOptions(parser);
    // Report "-platform" as one unknown option, not as eight.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    if (!parser.parse(arguments)) {
        options.error = parser.errorText();
        return options;
    }
    options.plugin = parser.positionalArguments().value(0);
    options.camera = parser.value("camera");
    options.readOnly = parser.isSet("read-only");
    options.listCameras = parser.isSet("list-cameras");
    options.trace = parser.value("trace");
    options.tour = parser.isSet("tour");
    options.screenshot = parser.value("screenshot");
    options.help = parser.isSet("help");
    options.version = parser.isSet("version");
    options.error = conflict(parser);

    const auto require = [&](const QString &wanted, const QString &name, const QString &value) {
        if (!wanted.isEmpty())
            options.error = QString("--%1 takes %2, not \"%3\".").arg(name, wanted, value);
    };
    const QString language = parser.value("language");
    options.language = language == "zh" ? 0 : 1;
    require(language == "zh" || language == "en" ? "" : "en or zh", "language", language);
    require(readStatus(parser.value("status"), options.status), "status", parser.value("status"));
    const QStringList faults = parser.values("fault");
    for (const QString &fault : faults)
        require(addFault(options.faults, fault), "fault", fault);
    if (parser.isSet("unit")) {
        options.unit = parser.value("unit").toInt();
        const bool valid = options.unit >= 1 && options.unit <= 255;
        require(valid ? "" : "a number from 1 to 255", "unit", parser.value("unit"));
    }
    for (const char *const name : {"camera", "trace", "screenshot"}) {
        if (parser.isSet(name) && parser.value(name).isEmpty())
            require("the name of a file", name, "");
    }
    return options;
}

QString Options::helpText()
{
    QCommandLineParser parser;
    addOptions(parser);
    return parser.helpText();
}
