#include "cameralist.h"
#include "commandchannel.h"
#include "errortexts.h"
#include "hostwindow.h"
#include "language.h"
#include "look.h"
#include "options.h"
#include "orvpluginapi.h"
#include "pluginfile.h"
#include "simulatedcamera.h"
#include "tour.h"
#include "tracefile.h"
#include "transferqueue.h"
#include "uvccamera.h"

#include <QApplication>
#include <QFileInfo>
#include <QImageWriter>
#include <QPixmap>
#include <QSaveFile>
#include <QTextStream>
#include <QTimer>

#include <chrono>
#include <clocale>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

// Exit statuses other than 0.
constexpr int failed = 1;
constexpr int badArguments = 2;

/// Delay of a screenshot without a tour. If the camera is silent, the panel retries after one
/// second; then its switches need time to slide.
constexpr auto settleTime = 1500ms;

int complain(const QString &sentence, int status = failed)
{
    QTextStream(stderr) << "orvhost: " << sentence << '\n';
    return status;
}

/// Opens closed standard streams on /dev/null. Otherwise the trace or the connection to the display
/// would take their place and receive their output.
void openStandardStreams()
{
    int file = -1;
    do
        file = ::open("/dev/null", O_RDWR);
    while (file >= 0 && file <= STDERR_FILENO);
    ::close(file);
}

/// Returns null and sets `error` to a sentence for the user if the camera cannot be used.
std::shared_ptr<Camera> openCamera(const Options &options, QString *error)
{
    if (!options.camera.isEmpty()) {
        const auto use = options.readOnly ? UvcCamera::Use::ReadOnly : UvcCamera::Use::ReadAndWrite;
        CameraRefusal refusal;
        auto camera = UvcCamera::open(options.camera, options.unit, use, &refusal);
        *error = refusalText(options.camera, refusal);
        return camera;
    }
    auto camera = std::make_shared<SimulatedCamera>();
    camera->setStatus(options.status);
    camera->setFaults(options.faults);
    return camera;
}

/// Prints `text` on standard output. Returns the exit status.
int print(const QString &text)
{
    if (std::fputs(qPrintable(text), stdout) >= 0 && std::fflush(stdout) == 0)
        return 0;
    return complain(QString("Cannot write to standard output: %1.").arg(qt_error_string()));
}

/// Why no picture can be written to the file `path`; empty if it can be.
QString pictureProblem(const QString &path)
{
    const QFileInfo info(path);
    if (!QImageWriter::supportedImageFormats().contains(info.suffix().toLower().toLatin1()))
        return R"(its name must end in ".png" or another picture format)";
    // Only looks; without commit(), the file stays as it is.
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) ? QString() : file.errorString();
}

/// Without a display, a tour or a picture of the window needs none.
void doWithoutDisplay()
{
    for (const char *const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (qEnvironmentVariableIsSet(variable))
            return;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // This platform warns about its limits.
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES"))
        qputenv("QT_LOGGING_RULES", "default.warning=false");
}

/// Writes the screenshot if the user asked for one, and ends the event loop.
void finish(const Options &options, QWidget &window, bool agreed)
{
    const bool written = options.screenshot.isEmpty() || window.grab().save(options.screenshot);
    if (!written)
        complain(QString("Cannot write the picture \"%1\".").arg(options.screenshot));
    QCoreApplication::exit(agreed && written ? 0 : failed);
}

int showPanel(const Options &options, const PluginFile &plugin,
              const std::shared_ptr<Camera> &camera, TraceFile &trace)
{
    TransferQueue queue(camera,
                        options.readOnly ? TransferQueue::ReadOnly : TransferQueue::ReadWrite);
    CommandChannel channel(queue, options.language);
    QObject::connect(&channel, &CommandChannel::transferred, &trace, &TraceFile::add);
    auto *const simulated = dynamic_cast<SimulatedCamera *>(camera.get());
    Language::install(options.language);
    HostWindow window(queue, channel, simulated);
    // Declared after the window, so that the instance is deleted before the panel's container.
    const std::unique_ptr<QObject> instance(plugin.object);
    std::unique_ptr<Tour> tour;
    if (options.tour)
        tour = std::make_unique<Tour>(simulated, channel, window);

    plugin.api->commandChannel = [&channel](int kind, const QVariant &record) {
        return channel.request(kind, record);
    };
    plugin.api->insertWidget(window.panelContainer());
    QObject::connect(&window, &HostWindow::resetRequested, &window,
                     [&plugin] { plugin.api->resetToDefault(); });
    window.show();

    if (tour) {
        QObject::connect(tour.get(), &Tour::finished, &window,
                         [&](bool agreed) { finish(options, window, agreed); });
    } else if (!options.screenshot.isEmpty()) {
        QTimer::singleShot(settleTime, &window, [&] { finish(options, window, true); });
    }
    // If the window is closed early, the host must not exit with status 0 before the tour or the
    // screenshot is done.
    QApplication::setQuitOnLastWindowClosed(!options.tour && options.screenshot.isEmpty());
    const int status = QApplication::exec();
    window.hide();
    queue.finish();
    return trace.finish() ? status : failed;
}

int runHost(const Options &options)
{
    if (!options.screenshot.isEmpty()) {
        const QString problem = pictureProblem(options.screenshot);
        if (!problem.isEmpty()) {
            return complain(
                QString("Cannot write the picture \"%1\": %2.").arg(options.screenshot, problem));
        }
    }
    const PluginFile plugin =
        PluginFile::load(options.plugin.isEmpty() ? PluginFile::defaultPath() : options.plugin);
    if (!plugin.error.isEmpty())
        return complain(plugin.error);

    if (options.tour && plugin.api->name() != "m24_tracking") {
        delete plugin.object;
        return complain("--tour works only with the panel \"AI Tracking\".");
    }

    TraceFile trace;
    QObject::connect(&trace, &TraceFile::failed, &trace,
                     [](const QString &sentence) { complain(sentence); });
    QString error;
    if (!options.trace.isEmpty())
        error = trace.open(options.trace);
    if (!error.isEmpty())
        return complain(error);
    const std::shared_ptr<Camera> camera = openCamera(options, &error);
    return camera ? showPanel(options, plugin, camera, trace) : complain(error);
}

} // namespace

int main(int argc, char *argv[])
{
    openStandardStreams();
    // QString::fromLocal8Bit() needs the locale. Qt sets it only with an application object.
    std::setlocale(LC_ALL, "");
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    const Options options = Options::read(arguments);
    if (!options.error.isEmpty())
        return complain(options.error, badArguments);

    // Hide the arguments from Qt, which would interpret some of them.
    argc = 1;
    if (options.help || options.version || options.listCameras) {
        const QCoreApplication application(argc, argv);
        return print(options.help      ? Options::helpText()
                     : options.version ? "orvhost " ORVHOST_VERSION "\n"
                                       : listCameras());
    }
    if (options.tour || !options.screenshot.isEmpty())
        doWithoutDisplay();
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    Look::applyDark();
    return runHost(options);
}
