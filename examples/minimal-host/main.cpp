// A minimal host: shows a settings panel that controls a camera with a state of five bytes.
//
//     minimal-host PLUGIN [PICTURE]
//
// With PICTURE, it saves a picture of the panel after a second and exits. The exit status is 0 if
// the panel has read the camera's status and the picture is written.

#include "orvpluginapi.h"

#include <QApplication>
#include <QDebug>
#include <QFileInfo>
#include <QPluginLoader>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget window;
    QVBoxLayout layout(&window);

    // An absolute path: Qt would look for a relative one in its plug-in folders.
    QPluginLoader loader(QFileInfo(QApplication::arguments().value(1)).absoluteFilePath());
    // Declared after the window, so destroyed before it.
    const std::unique_ptr<QObject> instance(loader.instance());
    auto *const panel = qobject_cast<OrvPluginApi *>(instance.get());
    if (!panel) {
        qCritical() << "No settings panel:" << loader.errorString();
        return 1;
    }

    // The camera's state (unused, tracking, type, mode, composition), and the command for each.
    quint8 status[] = {0, 1, 0, 1, 1};
    const quint8 commands[] = {0, 0x04, 0x10, 0x07, 0x13};
    bool statusRead = false;
    panel->commandChannel = [&](int request, const QVariant &record) -> QVariant {
        const QString setting = record.value<SettingData>().name;
        if (request == ChannelRequest::Setting && setting == QLatin1String("language"))
            return 1; // English
        auto unit = record.value<ExtensionUnit>();
        if (unit.write && unit.selector == 7 && unit.length == 60) {
            const auto *const command = std::find(commands + 1, std::end(commands), unit.data[3]);
            if (command != std::end(commands))
                status[command - commands] = unit.data[5];
        } else if (!unit.write && unit.selector == 8) {
            std::copy(std::begin(status), std::end(status), unit.data);
            unit.length = sizeof status;
            statusRead = true;
            return QVariant::fromValue(unit);
        }
        return {};
    };
    panel->insertWidget(&window);
    window.show();

    const QString picture = QApplication::arguments().value(2);
    if (!picture.isEmpty()) {
        QTimer::singleShot(1000, &window, [&] {
            const auto *const content = window.findChild<QWidget *>();
            const bool shown = content && content->isVisible();
            QApplication::exit(shown && statusRead && window.grab().save(picture) ? 0 : 1);
        });
    }
    return QApplication::exec();
}
