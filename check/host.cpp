#include "host.h"

#include "check.h"
#include "pluginfile.h"
#include "virtualtime.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

QByteArray Request::bytes() const
{
    const ExtensionUnit all = unit();
    const auto length = std::min<quint64>(all.length, sizeof all.data);
    return {reinterpret_cast<const char *>(all.data), static_cast<int>(length)};
}

bool Request::isExtension() const
{
    return kind == ChannelRequest::Extension && record.canConvert<ExtensionUnit>();
}

bool Request::asks() const
{
    return kind == ChannelRequest::Setting || (isExtension() && !unit().write);
}

QString Request::problem() const
{
    const bool isOther = (kind == ChannelRequest::Setting && record.canConvert<SettingData>()) ||
                         (kind == ChannelRequest::Camera && record.canConvert<CameraData>());
    if (!isExtension())
        return isOther ? "" : "there is no such request";
    const ExtensionUnit all = unit();
    if (all.length > sizeof all.data || (!all.write && all.length != 0))
        return QString("a length of %1").arg(all.length);
    QString framing = framingProblem(all.write, all.selector, bytes());
    if (!framing.isEmpty())
        return framing;
    // What a command has to say ends with its value.
    const quint64 end = all.write ? valueOffset + quint64(all.data[valueOffset - 1]) : 0;
    if (end > all.length)
        return QString("a value of %1 bytes").arg(all.data[valueOffset - 1]);
    const bool isPadded =
        std::none_of(all.data + end, std::end(all.data), [](quint8 byte) { return byte != 0; });
    return isPadded ? "" : "bytes beyond the value";
}

QString Request::inWords() const
{
    const ExtensionUnit all = unit();
    QString words =
        isExtension()
            ? QString(all.write ? "a write to control %1" : "a read of control %1")
                  .arg(all.selector)
            : QString("a request of kind %1 with a \"%2\"").arg(kind).arg(record.typeName());
    if (!onGuiThread)
        words += " on another thread";
    QString more = problem();
    if (all.write && more.isEmpty())
        more = refusal(true, all.selector, bytes());
    if (all.write && more.isEmpty())
        more = describeCommand(bytes());
    return more.isEmpty() ? words : words + " (" + more + ')';
}

void Host::load()
{
    VirtualTime::start();
    destroyWindow();
    expectRequests({}, [](const Request &) { return true; });
    camera.setStatus(factoryStatus);
    language = 1;
    answer = nullptr;
    window = new QWidget;
    window->setObjectName("window");
    window->resize(800, 1200);
    container = new QWidget;
    container->setObjectName("container");
    new QVBoxLayout(container);
    (new QVBoxLayout(window))->addWidget(container);

    const PluginFile loaded = PluginFile::load(plugin);
    expect(loaded.api, "the plug-in loads", loaded.error);
    instance = loaded.object;
    api = loaded.api;
    m_livingOne = ++m_lives;
    QObject::connect(instance, &QObject::destroyed, qApp, [this] { m_livingOne = 0; });
    api->commandChannel = [this, life = m_lives](int kind, const QVariant &record) {
        return request(kind, record, life);
    };
    // A dialog or menu that opens is closed again, whatever opened it. It may run an event loop.
    auto *const closer = new QTimer(window);
    QObject::connect(closer, &QTimer::timeout, closer, [] {
        for (auto *const open :
             {QApplication::activePopupWidget(), QApplication::activeModalWidget()}) {
            if (open && !open->close())
                open->hide(); // a message box that wants one of its buttons pressed
        }
    });
    closer->start(500ms);
    step("the first calls of the panel");
}

void Host::open()
{
    load();
    step("insertWidget");
    insert();
    step("showing the window");
    window->show();
    live(100ms);
}

void Host::reset()
{
    step("resetToDefault");
    api->resetToDefault();
}

void Host::live(std::chrono::milliseconds span) const
{
    VirtualTime::advance(span);
    expect(instance && container, "a panel that stays until the host destroys it or its window",
           "one that has gone, or whose window has");
}

void Host::destroyPanel()
{
    step("destroying the panel before its window");
    delete instance.data();
}

void Host::destroyWindow()
{
    step("destroying the window, with the panel if there still is one");
    delete window.data();
    delete instance.data();
}

QWidgetList Host::controls() const
{
    const QWidget *const dialog = QApplication::activeModalWidget();
    QWidgetList controls = (dialog ? dialog : container.data())->findChildren<QWidget *>();
    const auto isOutOfReach = [](const QWidget *widget) {
        return !widget->isEnabled() || widget->isWindow() || widget->visibleRegion().isEmpty();
    };
    controls.erase(std::remove_if(controls.begin(), controls.end(), isOutOfReach), controls.end());
    return controls;
}

void Host::use(QWidget *control)
{
    const bool byKey = any(3) == 0;
    QPoint place = control->rect().center();
    if (any(2) == 0)
        place.setX(std::min(place.x(), 8)); // where the box of a check box is
    step(QString("%1 %2 \"%3\" at %4, %5")
             .arg(byKey ? "the space bar on" : "a click on", control->metaObject()->className(),
                  control->objectName())
             .arg(place.x())
             .arg(place.y()));
    const QPointer<QWidget> alive(control);
    if (byKey)
        control->setFocus(Qt::TabFocusReason);
    for (const bool press : {true, false}) {
        QKeyEvent key(press ? QEvent::KeyPress : QEvent::KeyRelease, Qt::Key_Space, {}, " ");
        QMouseEvent button(press ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease, place,
                           control->mapToGlobal(place), Qt::LeftButton,
                           press ? Qt::LeftButton : Qt::NoButton, {});
        QCoreApplication::sendEvent(control, byKey ? static_cast<QEvent *>(&key) : &button);
        if (!alive)
            return;
    }
}

void Host::useAny(int limit)
{
    const QWidgetList all = controls();
    if (!all.isEmpty())
        use(all.at(any(all.size())));
    if (limit > 0)
        live(std::chrono::milliseconds(any(1 + any(limit))));
}

void Host::expectRequests(const QString &expected, const std::function<bool(const Request &)> &fine,
                          bool afterEnd)
{
    QVector<Request> requests;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        requests.swap(m_requests);
    }
    for (const Request &request : qAsConst(requests))
        expect(request.afterEnd != afterEnd || fine(request), expected, request.inWords());
}

QVariant Host::request(int kind, const QVariant &record, int life)
{
    const Request request{kind, record, QThread::currentThread() == qApp->thread(),
                          life != m_livingOne};
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_requests += request;
    }
    if (kind == ChannelRequest::Setting)
        return record.value<SettingData>().name == "language" ? language : QVariant();
    if (kind != ChannelRequest::Extension)
        return {};
    ExtensionUnit unit = request.unit();
    if (unit.write) {
        if (unit.selector == commandSelector)
            camera.sendCommand(request.bytes());
        return record;
    }
    if (answer && request.onGuiThread)
        return answer(unit);
    const QByteArray block =
        unit.selector == statusSelector ? camera.readStatus().bytes : QByteArray();
    std::copy(block.cbegin(), block.cend(), unit.data);
    unit.length = static_cast<quint64>(block.size());
    return QVariant::fromValue(unit);
}
