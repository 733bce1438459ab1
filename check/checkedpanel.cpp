#include "checkedpanel.h"

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

QByteArray Request::bytes() const
{
    const ExtensionUnit all = unit();
    const auto length = std::min<quint64>(all.length, sizeof all.data);
    return {reinterpret_cast<const char *>(all.data), static_cast<int>(length)};
}

bool Request::asks() const
{
    return kind == ChannelRequest::Setting || (kind == ChannelRequest::Extension && !unit().write);
}

QString Request::inWords() const
{
    if (kind == ChannelRequest::Setting)
        return QString("a query for \"%1\"").arg(record.value<SettingData>().name);
    if (kind == ChannelRequest::Camera)
        return "a camera request";
    if (!unit().write)
        return QString("a read of control %1").arg(unit().selector);
    const QString refusal = TrackingProtocol::refusal(true, unit().selector, bytes());
    return QString("a write to control %1 (%2)")
        .arg(unit().selector)
        .arg(refusal.isEmpty() ? TrackingProtocol::describeCommand(bytes()) : refusal);
}

CheckedPanel &CheckedPanel::load(const Task &task)
{
    VirtualTime::start();
    auto &panel = *new CheckedPanel;
    panel.window->resize(800, 1200);
    (new QVBoxLayout(panel.window))->addWidget(panel.container);
    new QVBoxLayout(panel.container);

    const PluginFile plugin = PluginFile::load(task.plugin);
    expect(plugin.api, "the plug-in loads", plugin.error);
    panel.instance = plugin.object;
    panel.api = plugin.api;
    panel.api->commandChannel = [&panel](int kind, const QVariant &record) {
        return panel.request(kind, record);
    };
    return panel;
}

CheckedPanel &CheckedPanel::open(const Task &task)
{
    CheckedPanel &panel = load(task);
    panel.insert();
    panel.window->show();
    VirtualTime::advance(100ms);
    return panel;
}

void CheckedPanel::destroyWindow()
{
    delete window.data();
    destroyPanel();
}

QWidgetList CheckedPanel::controls() const
{
    QWidgetList controls = container ? container->findChildren<QWidget *>() : QWidgetList();
    const auto isOutOfReach = [](const QWidget *widget) {
        return !widget->isEnabled() || widget->isWindow() || widget->visibleRegion().isEmpty();
    };
    controls.erase(std::remove_if(controls.begin(), controls.end(), isOutOfReach), controls.end());
    return controls;
}

void CheckedPanel::use(QWidget *control, Way way)
{
    static constexpr const char *ways[] = {"click in the middle of", "click at the beginning of",
                                           "space bar on"};
    step(QString("%1 %2 \"%3\"")
             .arg(ways[way], control->metaObject()->className(), control->objectName()));
    QTimer::singleShot(500ms, qApp, [] {
        for (auto *const open :
             {QApplication::activePopupWidget(), QApplication::activeModalWidget()}) {
            if (open)
                open->close();
        }
    });
    if (way == SpaceBar)
        control->setFocus(Qt::TabFocusReason);
    QPoint place = control->rect().center();
    if (way == Beginning)
        place.setX(std::min(place.x(), 8));
    const QPoint onScreen = control->mapToGlobal(place);
    QKeyEvent keyDown(QEvent::KeyPress, Qt::Key_Space, {}, " ");
    QKeyEvent keyUp(QEvent::KeyRelease, Qt::Key_Space, {}, " ");
    QMouseEvent buttonDown(QEvent::MouseButtonPress, place, onScreen, Qt::LeftButton,
                           Qt::LeftButton, {});
    QMouseEvent buttonUp(QEvent::MouseButtonRelease, place, onScreen, Qt::LeftButton, {}, {});
    const QPointer<QWidget> alive(control);
    QCoreApplication::sendEvent(control,
                                way == SpaceBar ? static_cast<QEvent *>(&keyDown) : &buttonDown);
    if (alive)
        QCoreApplication::sendEvent(control,
                                    way == SpaceBar ? static_cast<QEvent *>(&keyUp) : &buttonUp);
}

void CheckedPanel::useAny(const Task &task)
{
    const QWidgetList all = controls();
    if (!all.isEmpty())
        use(all.at(task.any(all.size())), static_cast<Way>(task.any(WayCount)));
}

void CheckedPanel::useForAWhile(const Task &task)
{
    for (int uses = task.any(5); uses > 0; --uses) {
        useAny(task);
        VirtualTime::advance(task.anyTime(1 + task.any(1000)));
    }
}

QVector<Request> CheckedPanel::takeRequests(bool alsoAsking)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QVector<Request> requests;
    requests.swap(m_requests);
    const auto isDropped = [=](const Request &request) {
        return !alsoAsking && request.asks();
    };
    requests.erase(std::remove_if(requests.begin(), requests.end(), isDropped), requests.end());
    return requests;
}

QVariant CheckedPanel::request(int kind, const QVariant &record)
{
    const Request request{kind, record, QThread::currentThread() == qApp->thread()};
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
        camera.write(static_cast<int>(unit.selector), request.bytes());
        return record;
    }
    if (answer && request.onGuiThread)
        return answer(unit);
    const QByteArray block = camera.read(static_cast<int>(unit.selector)).bytes;
    std::copy(block.cbegin(), block.cend(), unit.data);
    unit.length = static_cast<quint64>(block.size());
    return QVariant::fromValue(unit);
}
