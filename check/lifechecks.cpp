// From insertWidget to destruction, and after.

#include "check.h"
#include "checkedpanel.h"
#include "virtualtime.h"

#include <QApplication>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QStackedLayout>

#include <malloc.h>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

namespace {

constexpr SimulatedCamera::Status everythingOn = {0, 1, 2, 2, 3};
constexpr SimulatedCamera::Status everythingOff = {0, 0, 0, 1, 0};

/// Destroys panel or window first, as it comes.
void destroyEither(const Task &task, CheckedPanel &panel)
{
    const bool panelFirst = task.any(2) == 0;
    step(panelFirst ? QStringLiteral("destroying the panel before its window")
                    : QStringLiteral("destroying the window with the panel in it"));
    if (panelFirst) {
        panel.destroyPanel();
        VirtualTime::advance(std::chrono::milliseconds(task.any(100)));
    }
    panel.destroyWindow();
}

/// Some clicks, with up to a second between them.
void useForAWhile(const Task &task, CheckedPanel &panel)
{
    for (int clicks = task.any(5); clicks > 0; --clicks) {
        panel.useAny(task);
        VirtualTime::advance(std::chrono::milliseconds(task.any(10) * task.any(100)));
    }
}

void checkOpens(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::load(task);
    step(QStringLiteral("insertWidget"));
    panel.insert();
    step(QStringLiteral("showing the window"));
    panel.window()->show();
    VirtualTime::advance(1s);
    expect(!panel.controls().isEmpty(), QStringLiteral("visible widgets in the container"),
           QStringLiteral("none"));
}

void checkOpening(const Task &task)
{
    for (const auto &status : {factoryStatus, everythingOn, everythingOff}) {
        CheckedPanel &panel = CheckedPanel::load(task);
        panel.camera().setStatus(status);
        panel.api().name();
        panel.api().category();
        panel.api().getCurrentParams();
        VirtualTime::advance(2s);
        const QVector<Request> early = panel.takeRequests();
        expect(early.isEmpty(), QStringLiteral("no request before insertWidget"), inWords(early));
        panel.insert();
        bool hasRead = false;
        const QVector<Request> requests = panel.takeRequests();
        for (const Request &request : requests) {
            hasRead = hasRead || request.kind == ChannelRequest::Extension;
            // What the camera knows no command for it has not reported.
            const QByteArray bytes = request.bytes();
            const bool repeats =
                hasRead && request.kind == ChannelRequest::Extension &&
                refusal(true, commandSelector, bytes).isEmpty() &&
                status.at(fieldOf(bytes)) == static_cast<quint8>(bytes.at(valueOffset));
            expect(request.asks() || repeats,
                   QStringLiteral("in insertWidget reads, and writes of what was read"),
                   request.inWords());
        }
        panel.destroyWindow();
    }
}

void checkContainers(const Task &task)
{
    const auto layoutOf = [](int kind) -> QLayout * {
        switch (kind) {
        case 0:
            return new QVBoxLayout;
        case 1:
            return new QHBoxLayout;
        case 2:
            return new QGridLayout;
        case 3:
            return new QFormLayout;
        case 4:
            return new QStackedLayout;
        default:
            return nullptr;
        }
    };
    for (int variant = 0; variant < 24; ++variant) {
        const int kind = variant / 4;
        const bool hiddenFirst = (variant & 1) != 0;
        CheckedPanel &panel = CheckedPanel::load(task);
        delete panel.container()->layout();
        if (QLayout *const layout = layoutOf(kind))
            panel.container()->setLayout(layout);
        panel.language = (variant & 2) != 0 ? 1 : 0;
        const QLayout *const layout = panel.container()->layout();
        const QString situation =
            QStringLiteral("%1, %2, language %3")
                .arg(layout ? QString::fromLatin1(layout->metaObject()->className())
                            : QStringLiteral("no layout"),
                     hiddenFirst ? QStringLiteral("hidden at first") : QStringLiteral("shown"),
                     panel.language.toString());
        step(situation);
        if (!hiddenFirst)
            panel.window()->show();
        panel.insert();
        VirtualTime::advance(200ms);
        panel.window()->show();
        if (auto *const stack = qobject_cast<QStackedLayout *>(panel.container()->layout()))
            stack->setCurrentIndex(stack->count() - 1);
        VirtualTime::advance(200ms);
        expect(!panel.controls().isEmpty(), QStringLiteral("visible widgets with ") + situation,
               QStringLiteral("none"));
        panel.destroyWindow();
    }
}

void checkThawed(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    const auto expectThawed = [&](const char *when) {
        VirtualTime::advance(1s);
        expect(panel.window()->updatesEnabled() &&
                   (!panel.container() || panel.container()->updatesEnabled()),
               QStringLiteral("a window that is painted a second ") + QString::fromLatin1(when),
               QStringLiteral("a frozen one"));
    };
    expectThawed("after opening");
    for (int use = 0; use < 40; ++use) {
        panel.useAny(task);
        expectThawed("after a click");
    }
    step(QStringLiteral("resetToDefault"));
    panel.api().resetToDefault();
    expectThawed("after a reset");
    panel.camera().setStatus(panel.camera().status()[Tracking] ? everythingOff : everythingOn);
    VirtualTime::advance(5s);
    panel.useAny(task);
    panel.destroyPanel();
    expectThawed("after the end of a panel");
}

void checkLeftovers(const Task &task)
{
    for (int life = 0; life < 10; ++life) {
        CheckedPanel &panel = CheckedPanel::load(task);
        const QWidgetList before = panel.window()->findChildren<QWidget *>();
        const QString style = panel.window()->styleSheet() + qApp->styleSheet();
        panel.insert();
        panel.window()->show();
        useForAWhile(task, panel);
        step(QStringLiteral("destroying the panel before its window"));
        panel.destroyPanel();
        VirtualTime::advance(1s);
        const QWidgetList after =
            panel.window()->findChildren<QWidget *>() + QApplication::topLevelWidgets();
        for (QWidget *const widget : after) {
            expect(before.contains(widget) || widget == panel.window() || widget->isHidden(),
                   QStringLiteral("no widget left behind"),
                   QStringLiteral("a %1 \"%2\"")
                       .arg(QString::fromLatin1(widget->metaObject()->className()),
                            widget->objectName()));
        }
        expect(panel.container()->layout()->isEmpty(), QStringLiteral("an empty layout"),
               QStringLiteral("items in it"));
        expect(panel.window()->styleSheet() + qApp->styleSheet() == style,
               QStringLiteral("the host's own style sheets"), QStringLiteral("others"));
        panel.destroyWindow();
    }
}

void checkDestruction(const Task &task)
{
    for (int life = 0; life < 40; ++life) {
        CheckedPanel &panel = CheckedPanel::load(task);
        const int shown = task.any(3);
        if (shown == 0)
            panel.window()->show();
        if (task.any(10) > 0)
            panel.insert();
        if (shown > 0)
            panel.window()->setVisible(shown == 1);
        VirtualTime::advance(std::chrono::milliseconds(task.any(50) * task.any(100)));
        useForAWhile(task, panel);
        destroyEither(task, panel);
        VirtualTime::advance(1s);
    }
}

void checkAfterDeath(const Task &task)
{
    for (int life = 0; life < 20; ++life) {
        CheckedPanel &panel = CheckedPanel::open(task);
        useForAWhile(task, panel);
        destroyEither(task, panel);
        panel.takeRequests();
        VirtualTime::advance(10s);
        const QVector<Request> late = panel.takeRequests();
        expect(late.isEmpty(), QStringLiteral("no request after the end of the panel"),
               inWords(late));
    }
}

void checkLives(const Task &task)
{
    constexpr int warmUp = 20;
    constexpr int lives = 100;
    /// A panel may leave its catalog installed, and what records its requests stays.
    constexpr long bytesPerLife = 4096;
    std::size_t bytes = 0;
    int widgets = 0;
    for (int life = 0; life < warmUp + lives; ++life) {
        if (life == warmUp) {
            bytes = mallinfo2().uordblks;
            widgets = QApplication::allWidgets().size();
        }
        CheckedPanel &panel = CheckedPanel::open(task);
        panel.destroyWindow();
        VirtualTime::advance(200ms);
    }
    const int moreWidgets = QApplication::allWidgets().size() - widgets;
    expect(moreWidgets <= 0, QStringLiteral("as many widgets as before"),
           QStringLiteral("%1 more after %2 lives").arg(moreWidgets).arg(lives));
    const long growth = static_cast<long>(mallinfo2().uordblks - bytes) / lives;
    expect(growth <= bytesPerLife, QStringLiteral("at most %1 bytes a life").arg(bytesPerLife),
           QStringLiteral("%1").arg(growth));
}

} // namespace

std::vector<Check> lifeChecks()
{
    return {
        {"opens", "insertWidget returns, and the container has something to show.", checkOpens,
         "instance"},
        {"destruction", "It can be destroyed at any moment, before or with its window.",
         checkDestruction, "opens"},
        {"opening", "Nothing is sent before insertWidget, and in it only what was read there.",
         checkOpening, "destruction"},
        {"containers", "It works in every layout, hidden and shown, in both languages.",
         checkContainers, "destruction"},
        {"containers-144", "The same at 144 dots per inch.", checkContainers, "containers", 144},
        {"containers-192", "The same at 192 dots per inch.", checkContainers, "containers", 192},
        {"thawed", "The window never stays frozen.", checkThawed, "opens"},
        {"leftovers", "It leaves nothing behind in the window.", checkLeftovers, "destruction"},
        {"after-death", "It requests nothing after its end.", checkAfterDeath, "destruction"},
        {"lives", "A hundred lives in a row leave no growth.", checkLives, "destruction"},
    };
}
