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

bool Request::asks() const
{
    return kind == ChannelRequest::Setting ||
           (kind == ChannelRequest::Extension && !record.value<ExtensionUnit>().write);
}

QByteArray Request::bytes() const
{
    const auto unit = record.value<ExtensionUnit>();
    const auto length = std::min<quint64>(unit.length, sizeof unit.data);
    return {reinterpret_cast<const char *>(unit.data), static_cast<int>(length)};
}

QString Request::inWords() const
{
    if (kind == ChannelRequest::Setting)
        return QStringLiteral("a query for \"%1\"").arg(record.value<SettingData>().name);
    if (kind == ChannelRequest::Camera)
        return QStringLiteral("a camera request");
    const auto unit = record.value<ExtensionUnit>();
    if (!unit.write)
        return QStringLiteral("a read of control %1").arg(unit.selector);
    const QString refusal = TrackingProtocol::refusal(true, unit.selector, bytes());
    return QStringLiteral("a write to control %1 (%2)")
        .arg(unit.selector)
        .arg(refusal.isEmpty() ? TrackingProtocol::describeCommand(bytes()) : refusal);
}

QString inWords(const QVector<Request> &requests)
{
    QStringList words;
    for (const Request &request : requests) {
        const QString text = request.inWords();
        if (!words.contains(text))
            words += text;
    }
    return words.isEmpty() ? QStringLiteral("nothing") : words.join(QStringLiteral(", "));
}

CheckedPanel &CheckedPanel::load(const Task &task)
{
    VirtualTime::start();
    auto &panel = *new CheckedPanel;
    panel.m_window->resize(800, 1200);
    (new QVBoxLayout(panel.m_window))->addWidget(panel.m_container);
    new QVBoxLayout(panel.m_container);

    const PluginFile plugin = PluginFile::load(task.plugin);
    expect(plugin.api, QStringLiteral("the plug-in loads"), plugin.error);
    panel.m_instance = plugin.object;
    panel.m_api = plugin.api;
    panel.m_api->commandChannel = [&panel](int kind, const QVariant &record) {
        return panel.request(kind, record);
    };
    return panel;
}

CheckedPanel &CheckedPanel::open(const Task &task)
{
    CheckedPanel &panel = load(task);
    panel.insert();
    panel.m_window->show();
    VirtualTime::advance(100ms);
    return panel;
}

void CheckedPanel::destroyWindow()
{
    delete m_window.data();
    destroyPanel();
}

QWidgetList CheckedPanel::controls() const
{
    QWidgetList controls;
    if (m_container)
        controls = m_container->findChildren<QWidget *>();
    const auto isOutOfReach = [](const QWidget *widget) {
        return !widget->isEnabled() || widget->isWindow() || widget->visibleRegion().isEmpty();
    };
    controls.erase(std::remove_if(controls.begin(), controls.end(), isOutOfReach), controls.end());
    return controls;
}

void CheckedPanel::use(QWidget *control, Way way)
{
    static constexpr const char *words[] = {"click in the middle of", "click at the beginning of",
                                            "space bar on"};
    step(QStringLiteral("%1 %2 \"%3\"")
             .arg(QString::fromLatin1(words[way]),
                  QString::fromLatin1(control->metaObject()->className()), control->objectName()));
    QTimer::singleShot(500ms, qApp, [] {
        for (QWidget *const open :
             {QApplication::activePopupWidget(), QApplication::activeModalWidget()}) {
            if (open)
                open->close();
        }
    });
    const QPointer<QWidget> alive(control);
    if (way == SpaceBar)
        control->setFocus(Qt::TabFocusReason);
    QPoint place = control->rect().center();
    if (way == Beginning)
        place.setX(std::min(place.x(), 8));
    for (const bool pressed : {true, false}) {
        if (!alive)
            return;
        if (way == SpaceBar) {
            QKeyEvent event(pressed ? QEvent::KeyPress : QEvent::KeyRelease, Qt::Key_Space,
                            Qt::NoModifier, QStringLiteral(" "));
            QCoreApplication::sendEvent(control, &event);
        } else {
            QMouseEvent event(pressed ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease,
                              place, control->mapToGlobal(place), Qt::LeftButton,
                              pressed ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(control, &event);
        }
    }
}

void CheckedPanel::useAny(const Task &task)
{
    const QWidgetList all = controls();
    if (!all.isEmpty())
        use(all.at(task.any(all.size())), static_cast<Way>(task.any(WayCount)));
}

QVector<Request> CheckedPanel::takeRequests()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QVector<Request> requests;
    requests.swap(m_requests);
    return requests;
}

QVector<Request> CheckedPanel::takeSent()
{
    QVector<Request> sent = takeRequests();
    const auto asks = [](const Request &request) {
        return request.asks();
    };
    sent.erase(std::remove_if(sent.begin(), sent.end(), asks), sent.end());
    return sent;
}

QVariant CheckedPanel::request(int kind, const QVariant &record)
{
    const Request request{kind, record, QThread::currentThread() == qApp->thread()};
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_requests += request;
    }
    if (duringRequest)
        duringRequest();
    if (kind == ChannelRequest::Setting)
        return record.value<SettingData>().name == QLatin1String("language") ? language
                                                                             : QVariant();
    if (kind != ChannelRequest::Extension)
        return {};
    auto unit = record.value<ExtensionUnit>();
    if (unit.write) {
        m_camera.write(static_cast<int>(unit.selector), request.bytes());
        return record;
    }
    if (answer && request.onGuiThread)
        return answer(unit);
    const QByteArray block = m_camera.read(static_cast<int>(unit.selector)).bytes;
    std::copy(block.cbegin(), block.cend(), unit.data);
    unit.length = static_cast<quint64>(block.size());
    return QVariant::fromValue(unit);
}
