#include "host.h"

#include "extensionrecord.h"
#include "mousepress.h"
#include "pluginfile.h"
#include "report.h"
#include "virtualtime.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>

#include <algorithm>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

/// Closes menus and dialogs. Each may run an event loop, which would block the check.
static void closePopups()
{
    for (auto *const open :
         {QApplication::activePopupWidget(), QApplication::activeModalWidget()}) {
        if (open && !open->close())
            open->hide(); // some message boxes close only when a button is pressed
    }
}

void Host::load()
{
    VirtualTime::start();
    destroyWindow();
    takeRequests();
    readAnswer = nullptr;
    m_window = std::make_unique<PanelWindow>();
    window = &m_window->window;
    window->resize(800, 1200);
    container = m_window->container;

    const PluginFile loaded = PluginFile::load(plugin);
    expect(loaded.api, "the plug-in loads", loaded.error);
    instance = loaded.object;
    api = loaded.api;
    installIn(*api);
    auto *const closer = new QTimer(window);
    QObject::connect(closer, &QTimer::timeout, closer, &closePopups);
    closer->start(500ms);
}

void Host::open()
{
    load();
    step("insertWidget()");
    insert();
    window->show();
    live(100ms);
}

void Host::reset()
{
    step("resetToDefault()");
    api->resetToDefault();
}

void Host::live(std::chrono::milliseconds span) const
{
    VirtualTime::advance(span);
    expect(instance && container, "a panel that lives until the host destroys it or its window",
           "it is gone");
}

void Host::destroyPanel()
{
    step("destroying the panel before its window");
    delete instance.data();
}

void Host::destroyWindow()
{
    step("destroying the window and the panel in it");
    m_window.reset();
    delete instance.data();
}

QWidgetList Host::controls() const
{
    const QWidget *const dialog = QApplication::activeModalWidget();
    QWidgetList controls = (dialog ? dialog : container.data())->findChildren<QWidget *>();
    const auto isUnusable = [](const QWidget *widget) {
        return !widget->isEnabled() || widget->isWindow() || widget->visibleRegion().isEmpty();
    };
    controls.erase(std::remove_if(controls.begin(), controls.end(), isUnusable), controls.end());
    return controls;
}

static void pressSpace(QWidget *control)
{
    const QPointer<QWidget> alive(control);
    control->setFocus(Qt::TabFocusReason);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, {}, " ");
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Space, {}, " ");
    QCoreApplication::sendEvent(control, &press);
    if (alive)
        QCoreApplication::sendEvent(control, &release);
}

void Host::use(QWidget *control)
{
    const bool byKey = any(3) == 0;
    QPoint place = control->rect().center();
    if (any(2) == 0)
        place.setX(std::min(place.x(), 8)); // hits the box of a wide check box
    step(QString("%1 %2 \"%3\"")
             .arg(byKey ? "the space bar on" : "a click on", control->metaObject()->className(),
                  control->objectName()));
    if (byKey)
        pressSpace(control);
    else
        pressMouse(*control, place);
}

void Host::useAny(int limit)
{
    const QWidgetList all = controls();
    if (!all.isEmpty())
        use(all.at(any(all.size())));
    if (limit > 0)
        live(std::chrono::milliseconds(any(1 + any(limit))));
}

void Host::expectRequests(const QString &expected, const std::function<bool(const Request &)> &fine)
{
    const QVector<Request> requests = takeRequests();
    for (const Request &request : requests)
        expect(fine(request), expected, request.inWords());
}

QVariant Host::answer(const Request &request)
{
    if (request.kind != ChannelRequest::Extension)
        return RecordingChannel::answer(request);
    const ExtensionUnit unit = request.unit();
    if (unit.write) {
        if (unit.selector == commandSelector)
            camera.sendCommand(request.bytes());
        return request.record;
    }
    if (readAnswer && request.onGuiThread)
        return readAnswer(unit);
    const QByteArray block =
        unit.selector == statusSelector ? camera.readStatus().bytes : QByteArray();
    return QVariant::fromValue(extensionRecord(false, unit.selector, block));
}
