#include "processsetup.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};
int signalPipe[2];

/// May only call functions that are safe in a signal handler.
void takeSignal(int /*number*/)
{
    const int error = errno;
    for (const int number : endingSignals)
        std::signal(number, SIG_DFL);
    [[maybe_unused]] const auto written = ::write(signalPipe[1], "", 1);
    errno = error;
}

} // namespace

void ProcessSetup::openStandardStreams()
{
    int file = -1;
    do
        file = ::open("/dev/null", O_RDWR);
    while (file >= 0 && file <= STDERR_FILENO);
    ::close(file);
}

void ProcessSetup::doWithoutDisplay()
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

void ProcessSetup::exitOnSignals(QObject &context, int status)
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
