#include "gallery.h"
#include "look.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QGroupBox>
#include <QTextStream>
#include <QTimer>

#include <chrono>

static int fail(const QString &sentence)
{
    QTextStream(stderr) << "m24_gallery: " << sentence << '\n';
    return 1;
}

/// Writes the window to the file `screenshot`, and each group to a file in the folder `pictures`.
/// An empty name skips its part. Returns the exit status.
static int writePictures(Gallery &gallery, const QString &screenshot, const QString &pictures)
{
    // A small screen may have limited the window's size.
    gallery.resize(gallery.sizeHint());
    if (!screenshot.isEmpty() && !gallery.grab().save(screenshot))
        return fail(QString("Cannot write the picture \"%1\".").arg(screenshot));
    if (pictures.isEmpty())
        return 0;
    const auto groups = gallery.findChildren<QGroupBox *>();
    for (QGroupBox *const group : groups) {
        const QString file = QString("%1/%2.png").arg(pictures, group->objectName());
        if (!group->grab().save(file))
            return fail(QString("Cannot write the picture \"%1\".").arg(file));
    }
    return 0;
}

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(GALLERY_VERSION);
    QCommandLineParser parser;
    parser.setApplicationDescription("Shows every widget of the toolkit in each of its states.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {"picture", "Show the picture in this file.", "file"},
        {"pictures", "Write a picture of each widget to this folder and exit.", "folder"},
        {"screenshot", "Write a picture of the window to this file and exit.", "file"},
    });
    parser.process(application);
    const QString screenshot = parser.value("screenshot");
    const QString pictures = parser.value("pictures");

    Look::applyDark();
    Gallery gallery;
    if (parser.isSet("picture")) {
        const QString error = gallery.setPicture(parser.value("picture"));
        if (!error.isEmpty())
            return fail(error);
    }
    gallery.show();
    if (!screenshot.isEmpty() || !pictures.isEmpty()) {
        // Wait until the switches have slid to their places.
        constexpr std::chrono::milliseconds settleTime(500);
        QApplication::setQuitOnLastWindowClosed(false);
        QTimer::singleShot(settleTime, &gallery, [&] {
            QCoreApplication::exit(writePictures(gallery, screenshot, pictures));
        });
    }
    return QApplication::exec();
}
