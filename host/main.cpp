#include "cameralist.h"
#include "commandchannel.h"
#include "gallery.h"
#include "hostwindow.h"
#include "look.h"
#include "opencamera.h"
#include "options.h"
#include "orvpluginapi.h"
#include "pluginfile.h"
#include "simulatedcamera.h"
#include "tour.h"
#include "transferqueue.h"
#include "transfertext.h"

#include <QApplication>
#include <QFile>
#include <QGroupBox>
#include <QPixmap>
#include <QTextStream>
#include <QTimer>

#include <chrono>
#include <clocale>
#include <memory>

namespace {

using namespace std::chrono_literals;

/// Exit statuses beside 0.
constexpr int failed = 1;
constexpr int badArguments = 2;

/// The panel asks a silent camera once more a second after set-up; its slides are over by then.
constexpr auto settleTime = 1500ms;

void complain(const QString &sentence)
{
    QTextStream(stderr) << "orvhost: " << sentence << '\n';
}

bool writePicture(QWidget &window, const QString &file)
{
    const bool written = window.grab().save(file);
    if (!written)
        complain(QStringLiteral("Cannot write the picture \"%1\".").arg(file));
    return written;
}

int runGallery(const Options &options)
{
    Gallery gallery;
    const QString error =
        options.picture.isEmpty() ? QString() : gallery.setPicture(options.picture);
    if (!error.isEmpty()) {
        complain(error);
        return failed;
    }
    gallery.show();

    if (!options.screenshot.isEmpty() || !options.pictures.isEmpty()) {
        QApplication::setQuitOnLastWindowClosed(false);
        QTimer::singleShot(settleTime, &gallery, [&] {
            // A screen may have had no room for all of it.
            gallery.resize(gallery.sizeHint());
            bool written =
                options.screenshot.isEmpty() || writePicture(gallery, options.screenshot);
            const auto groups = gallery.findChildren<QGroupBox *>();
            for (QGroupBox *const group : groups) {
                const QString file =
                    QStringLiteral("%1/%2.png").arg(options.pictures, group->objectName());
                written = written && (options.pictures.isEmpty() || writePicture(*group, file));
            }
            QCoreApplication::exit(written ? 0 : failed);
        });
    }
    return QApplication::exec();
}

int runHost(const Options &options, int &argc, char **argv)
{
    // Both are read while the application object is made.
    if (!options.dotsPerInch.isEmpty())
        qputenv("QT_FONT_DPI", options.dotsPerInch);
    if (!options.scaleFactor.isEmpty())
        qputenv("QT_SCALE_FACTOR", options.scaleFactor);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    Look::applyDark();
    if (options.gallery)
        return runGallery(options);

    const PluginFile plugin =
        PluginFile::load(options.plugin.isEmpty() ? PluginFile::defaultPath() : options.plugin);
    if (!plugin.error.isEmpty()) {
        complain(plugin.error);
        return failed;
    }

    QFile trace(options.trace);
    // Unbuffered: whatever becomes of this program, the file ends with a whole line.
    if (!options.trace.isEmpty() && !trace.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        complain(QStringLiteral("Cannot write the trace \"%1\": %2.")
                     .arg(options.trace, trace.errorString()));
        return failed;
    }
    QString error;
    const std::shared_ptr<Camera> camera = openCamera(options, &error);
    if (!camera) {
        complain(error);
        return failed;
    }
    auto *const simulated = dynamic_cast<SimulatedCamera *>(camera.get());
    TransferQueue queue(camera,
                        options.readOnly ? TransferQueue::ReadOnly : TransferQueue::ReadWrite);
    CommandChannel channel(queue);
    channel.setSetting(QStringLiteral("language"), options.language);
    if (trace.isOpen()) {
        QObject::connect(&channel, &CommandChannel::transferred, &channel,
                         [&trace](const Transfer &transfer) { trace.write(toJsonLine(transfer)); });
    }
    HostWindow window(queue, channel, simulated);
    // Later than the window, so that it goes first and as a QObject, not with its container.
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

    const auto finish = [&](bool agreed) {
        const bool written =
            options.screenshot.isEmpty() || writePicture(window, options.screenshot);
        QCoreApplication::exit(agreed && written ? 0 : failed);
    };
    // Whoever closes the window does not end the work with exit status 0.
    QApplication::setQuitOnLastWindowClosed(!options.tour && options.screenshot.isEmpty());
    if (tour) {
        QObject::connect(tour.get(), &Tour::finished, &window, finish);
    } else if (!options.screenshot.isEmpty()) {
        QTimer::singleShot(settleTime, &window, [&finish] { finish(true); });
    }
    const int status = QApplication::exec();
    window.hide();
    queue.finish();
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    // Arguments are in the locale's encoding, and no application has set the locale yet.
    std::setlocale(LC_ALL, "");
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);

    const Options options = Options::read(arguments);
    if (!options.error.isEmpty()) {
        complain(options.error);
        return badArguments;
    }
    // Every option is this program's own: the application sees none of them.
    argc = 1;
    if (options.help || options.version || options.listCameras) {
        const QCoreApplication application(argc, argv);
        QTextStream(stdout) << (options.help      ? Options::helpText()
                                : options.version ? QStringLiteral("orvhost " ORVHOST_VERSION "\n")
                                                  : listCameras());
        return 0;
    }
    return runHost(options, argc, argv);
}
