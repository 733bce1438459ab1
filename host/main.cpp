#include "cameralist.h"
#include "cameraview.h"
#include "errortexts.h"
#include "hostwindow.h"
#include "language.h"
#include "look.h"
#include "options.h"
#include "orvpluginapi.h"
#include "pluginfile.h"
#include "processsetup.h"
#include "session.h"
#include "simulatedcamera.h"
#include "statusline.h"
#include "tour.h"
#include "tracefile.h"
#include "transfertext.h"
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
#include <memory>

namespace {

using namespace std::chrono_literals;

// Exit statuses other than 0.
constexpr int failed = 1;
constexpr int badArguments = 2;

/// Delay of a screenshot without a tour. If the camera is silent, the panel retries after one
/// second; then its switches need time to slide.
constexpr auto settleTime = 1500ms;

/// When everybody is in the simulated camera's room, in milliseconds.
constexpr int pictureTime = 27000;

int complain(const QString &sentence, int status = failed)
{
    QTextStream(stderr) << "orvhost: " << sentence << '\n';
    return status;
}

std::shared_ptr<Camera> makeCamera(const Options &options, Camera::Access access)
{
    if (!options.camera.isEmpty())
        return std::make_shared<UvcCamera>(options.camera, options.unit, access);
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

/// Writes the screenshot if the user asked for one, and ends the event loop.
void finish(const Options &options, QWidget &window, bool agreed)
{
    const bool written = options.screenshot.isEmpty() || window.grab().save(options.screenshot);
    if (!written)
        complain(QString("Cannot write the picture \"%1\".").arg(options.screenshot));
    QCoreApplication::exit(agreed && written ? 0 : failed);
}

int runSession(const Options &options, const PluginFile &plugin, TraceFile &trace)
{
    const auto access = options.readOnly ? Camera::ReadOnly : Camera::ReadWrite;
    Language::install(options.language);
    Session session(makeCamera(options, access), access, plugin, options.language);
    QObject::connect(&session.channel(), &CommandChannel::transferred, &trace, &TraceFile::add);
    HostWindow window(session.queue(), session.channel(), session.simulated());
    QObject::connect(&trace, &TraceFile::failed, &window, [&window](const QString &sentence) {
        window.statusLine().setNotice(inWindowLanguage(sentence));
    });
    std::unique_ptr<Tour> tour;
    if (options.tour)
        tour = std::make_unique<Tour>(session.simulated(), session.channel(), window);

    session.showPanelIn(window.panelContainer());
    QObject::connect(&session, &Session::refused, &window, [](const CameraRefusal &refusal) {
        QCoreApplication::exit(complain(refusalText(refusal)));
    });
    QObject::connect(&window, &HostWindow::resetRequested, &session, &Session::resetToDefault);
    QObject::connect(&window, &HostWindow::readAgainRequested, &session, &Session::renewPanel);
    auto *const picture = window.findChild<CameraView *>();
    if (picture && !options.screenshot.isEmpty())
        picture->freeze(pictureTime);
    window.show();

    if (tour) {
        QObject::connect(tour.get(), &Tour::finished, &window,
                         [&](bool agreed) { finish(options, window, agreed); });
    } else if (!options.screenshot.isEmpty()) {
        QObject::connect(&session, &Session::panelCreated, &window, [&] {
            QTimer::singleShot(settleTime, &window, [&] { finish(options, window, true); });
        });
    }
    // If the window is closed or a signal comes early, the host must not exit with status 0 before
    // the tour or the screenshot is done.
    const bool hasTask = options.tour || !options.screenshot.isEmpty();
    QApplication::setQuitOnLastWindowClosed(!hasTask);
    ProcessSetup::exitOnSignals(window, hasTask ? failed : 0);
    const int status = QApplication::exec();
    window.hide();
    session.end();
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
    if (!options.trace.isEmpty()) {
        const QString error = trace.open(options.trace);
        if (!error.isEmpty()) {
            delete plugin.object;
            return complain(error);
        }
    }
    return runSession(options, plugin, trace);
}

} // namespace

int main(int argc, char *argv[])
{
    ProcessSetup::openStandardStreams();
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
        ProcessSetup::doWithoutDisplay();
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    Look::applyDark();
    return runHost(options);
}
