#include "host.h"

#include "extensionrecord.h"
#include "mousepress.h"
#include "pluginfile.h"
#include "report.h"
#include "virtualtime.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QFile>
#include <QKeyEvent>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <array>
#include <iterator>
#include <sys/times.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

QWidget *Host::openDialog()
{
    QWidget *const popup = QApplication::activePopupWidget();
    return popup ? popup : QApplication::activeModalWidget();
}

void Host::load()
{
    VirtualTime::start();
    destroyWindow();
    readAnswer = nullptr;
    duringRequest = nullptr;
    expectRequests({}, nullptr);
    step("loading the plug-in");
    m_window = std::make_unique<PanelWindow>();
    window = &m_window->window;
    window->resize(800, 1200);
    container = m_window->container;

    const PluginFile loaded = PluginFile::load(plugin);
    expect(loaded.api, "a plug-in for this interface that Qt can load", loaded.error);
    instance = loaded.object;
    api = loaded.api;
    installIn(*api);
    static const bool isVisiting = (visitDialog(), true);
    Q_UNUSED(isVisiting)
}

void Host::insert(const QString &circumstances)
{
    step("insertWidget()" + circumstances);
    api->insertWidget(container);
    step("after insertWidget()" + circumstances);
}

void Host::open()
{
    load();
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
    expect(!api || (instance && container),
           "a panel that lives until the host destroys it or its window", "it is gone");
}

void Host::destroyPanel()
{
    step("destroying the panel before its window");
    api = nullptr;
    delete instance.data();
}

void Host::destroyWindow()
{
    step("destroying the window and the panel in it");
    api = nullptr;
    m_window.reset();
    delete instance.data();
}

/// The widgets of the window in which `parent` is that a user could click now.
static QWidgetList usableIn(const QWidget &parent)
{
    QWidgetList usable;
    const auto all = parent.findChildren<QWidget *>();
    for (QWidget *const widget : all) {
        if (widget->isEnabled() && widget->window() == parent.window() &&
            !widget->visibleRegion().isEmpty())
            usable += widget;
    }
    return usable;
}

QWidgetList Host::controls() const
{
    QWidgetList controls = container ? usableIn(*container) : QWidgetList();
    const QWidgetList others = QApplication::topLevelWidgets();
    for (const QWidget *const other : others) {
        if (other != window && other->isVisible())
            controls += usableIn(*other);
    }
    return controls;
}

static void pressKey(QWidget *control, int key)
{
    const QPointer<QWidget> alive(control);
    control->setFocus(Qt::TabFocusReason);
    const QString text = key == Qt::Key_Space ? " " : "";
    QKeyEvent press(QEvent::KeyPress, key, {}, text);
    QKeyEvent release(QEvent::KeyRelease, key, {}, text);
    QCoreApplication::sendEvent(control, &press);
    if (alive)
        QCoreApplication::sendEvent(control, &release);
}

void Host::press(QWidget *control, int way)
{
    static constexpr const char *ways[] = {"a click on",        "a click on",
                                           "the space bar on",  "the Down key on",
                                           "the Return key on", "the menu of"};
    step(QString("%1 %2 \"%3\"")
             .arg(ways[way], control->metaObject()->className(), control->objectName()));
    QPoint place = control->rect().center();
    if (way == LeftEnd)
        place.setX(std::min(place.x(), 8)); // hits the box of a wide check box
    QContextMenuEvent menu(QContextMenuEvent::Mouse, place, control->mapToGlobal(place));
    if (way <= LeftEnd)
        pressMouse(*control, place);
    else if (way == Menu)
        QCoreApplication::sendEvent(control, &menu);
    else
        pressKey(control, std::array{Qt::Key_Space, Qt::Key_Down, Qt::Key_Return}.at(way - Space));
}

void Host::use(QWidget *control, int way)
{
    press(control, way);
    for (int turns = 0; openDialog() && turns < 20; ++turns)
        VirtualTime::advance(500ms);
}

void Host::useAny(int limit)
{
    const QWidgetList all = controls();
    if (!all.isEmpty())
        use(all.at(any(all.size())), any(any(3) > 0 ? int(mainWays) : int(WayCount)));
    if (limit > 0)
        live(std::chrono::milliseconds(any(1 + any(limit))));
}

void Host::useAll(std::chrono::milliseconds pause, const std::function<void()> &then)
{
    QSet<QWidget *> used;
    // Limited, because a panel may replace its controls again and again.
    while (used.size() < 500) {
        QWidgetList others;
        const QWidgetList all = controls();
        std::copy_if(all.begin(), all.end(), std::back_inserter(others),
                     [&](QWidget *control) { return !used.contains(control); });
        if (others.isEmpty())
            return;
        QWidget *const control = others.at(any(others.size()));
        used.insert(control);
        for (int way = Middle; way < WayCount && controls().contains(control); ++way) {
            use(control, way);
            live(pause);
            then();
        }
    }
}

/// Runs while any event loop runs, such as a dialog's.
void Host::visitDialog()
{
    // Not a repeating timer, which does not time out again while its slot runs an event loop.
    QTimer::singleShot(500ms, qApp, [this] { visitDialog(); });
    QWidget *const dialog = openDialog();
    if (dialog && inDialog)
        inDialog();
    else if (dialog && ++m_dialogVisits % 4 != 0)
        useDialog(dialog);
    else if (dialog && !dialog->close())
        dialog->hide(); // some message boxes close only when a button is pressed
}

void Host::useDialog(QWidget *dialog)
{
    // Takes the next action or control each time, because most of them close the dialog.
    const int turn = m_dialogUses++;
    if (dialog == QApplication::activePopupWidget()) {
        auto *const list = dialog->findChild<QAbstractItemView *>(); // of a combo box
        const QPointer<QWidget> target = list ? list : dialog;
        QVector<int> keys(2 + turn % 10, Qt::Key_Down);
        keys.first() = Qt::Key_Home;
        keys.last() = Qt::Key_Return;
        for (const int key : qAsConst(keys)) {
            if (target)
                pressKey(target, key);
        }
        return;
    }
    QWidgetList buttons;
    const QWidgetList all = usableIn(*dialog);
    std::copy_if(all.begin(), all.end(), std::back_inserter(buttons),
                 [](QWidget *control) { return control->focusPolicy() != Qt::NoFocus; });
    if (!buttons.isEmpty())
        press(buttons.at(turn % buttons.size()), turn / buttons.size() % mainWays);
}

void Host::expectRequests(const QString &expected, std::function<bool(const Request &)> fine)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_expected = expected;
    m_fine = std::move(fine);
}

QVariant Host::answer(const Request &request)
{
    takeRequests(); // keeps long checks small
    std::unique_lock<std::mutex> lock(m_mutex);
    if (m_fine)
        expect(m_fine(request), m_expected, request.inWords());
    lock.unlock();
    if (duringRequest && request.onGuiThread) {
        const auto action = std::exchange(duringRequest, nullptr); // not during its own requests
        action();
        duringRequest = action;
    }
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

std::chrono::milliseconds Host::ownTime()
{
    // In nanoseconds: running, waiting for a processor.
    QFile file("/proc/thread-self/schedstat");
    const bool isKnown = file.open(QIODevice::ReadOnly);
    const qint64 waited = isKnown ? file.readAll().split(' ').value(1).toLongLong() : 0;
    return realTime() - std::chrono::milliseconds(waited / 1000000);
}

std::chrono::milliseconds Host::realTime()
{
    return times(nullptr) * 1000ms / sysconf(_SC_CLK_TCK); // not the virtual clock
}
