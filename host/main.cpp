#include "cameralist.h"
#include "errortexts.h"
#include "hostwindow.h"
#include "look.h"
#include "options.h"
#include "pluginfile.h"
#include "session.h"
#include "simulatedcamera.h"
#include "tour.h"
#include "transfertext.h"
#include "uvccamera.h"

#include <QApplication>
#include <QFile>
#include <QPixmap>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>

#include <cerrno>
#include <chrono>
#include <clocale>
#include <csignal>
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

std::shared_ptr<Camera> makeCamera(const Options &options, Camera::Access access)
{
    if (!options.camera.isEmpty())
        return std::make_shared<UvcCamera>(options.camera, options.unit, access);
    auto camera = std::make_shared<SimulatedCamera>();
    camera->setStatus(options.status);
    camera->setFaults(options.faults);
    return camera;
}

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};
int signalPipe[2];

/// May only call functions that are safe in a signal handler.
void takeSignal(int /*number*/)
{
    const int error = errno;
    // A second signal kills the program.
    for (const int number : endingSignals)
        std::signal(number, SIG_DFL);
    [[maybe_unused]] const auto written = ::write(signalPipe[1], "", 1);
    errno = error;
}

/// Makes the signals that usually kill a program end the event loop with `status`.
void exitOnSignals(QObject &context, int status)
{
    if (::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *const notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, &context);
    QObject::connect(notifier, &QSocketNotifier::activated, &context, [notifier, status] {
        notifier->setEnabled(false);
        QCoreApplication::exit(status);
    });
    for (const int number : endingSignals) {
        // nohup ignores SIGHUP for the program.
        if (std::signal(number, takeSignal) == SIG_IGN && number == SIGHUP)
            std::signal(number, SIG_IGN);
    }
}

/// Writes the screenshot if the user asked for one, and ends the event loop.
void finish(const Options &options, QWidget &window, bool agreed)
{
    const bool written = options.screenshot.isEmpty() || window.grab().save(options.screenshot);
    if (!written)
        complain(QString("Cannot write the picture \"%1\".").arg(options.screenshot));
    QCoreApplication::exit(agreed && written ? 0 : failed);
}

int runSession(const Options &options, const PluginFile &plugin, QFile &trace)
{
    const auto access = options.readOnly ? Camera::ReadOnly : Camera::ReadWrite;
    Session session(makeCamera(options, access), access, plugin, options.language);
    if (trace.isOpen()) {
        QObject::connect(&session.channel(), &CommandChannel::transferred, &session,
                         [&trace](const Transfer &transfer) { trace.write(toJsonLine(transfer)); });
    }
    HostWindow window(session.queue(), session.channel(), session.simulated());
    std::unique_ptr<Tour> tour;
    if (options.tour)
        tour = std::make_unique<Tour>(session.simulated(), session.channel(), window);

    session.showPanelIn(window.panelContainer());
    QObject::connect(&session, &Session::refused, &window, [](const CameraRefusal &refusal) {
        QCoreApplication::exit(complain(refusalText(refusal)));
    });
    QObject::connect(&window, &HostWindow::resetRequested, &session, &Session::resetToDefault);
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
    exitOnSignals(window, hasTask ? failed : 0);
    const int status = QApplication::exec();
    window.hide();
    session.end();
    return status;
}

int runHost(const Options &options)
{
    const PluginFile plugin =
        PluginFile::load(options.plugin.isEmpty() ? PluginFile::defaultPath() : options.plugin);
    if (!plugin.error.isEmpty())
        return complain(plugin.error);

    QFile trace(options.trace);
    // Unbuffered: if the host crashes, the file still ends with a complete line.
    if (!options.trace.isEmpty() && !trace.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return complain(
            QString("Cannot write the trace \"%1\": %2.").arg(options.trace, trace.errorString()));
    }
    return runSession(options, plugin, trace);
}

} // namespace

int main(int argc, char *argv[])
{
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
        QTextStream(stdout) << (options.help      ? Options::helpText()
                                : options.version ? "orvhost " ORVHOST_VERSION "\n"
                                                  : listCameras());
        return 0;
    }
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    Look::applyDark();
    return runHost(options);
}
