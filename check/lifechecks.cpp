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

static void checkOpens(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::load(task);
    step("insertWidget");
    panel.insert();
    step("showing the window");
    panel.window->show();
    VirtualTime::advance(1s);
    expect(!panel.controls().isEmpty(), "visible widgets in the container", "none");
}

static void checkDestruction(const Task &task)
{
    for (int life = 0; life < 40; ++life) {
        CheckedPanel &panel = CheckedPanel::load(task);
        panel.window->setVisible(task.any(2) == 0);
        if (task.any(10) > 0)
            panel.insert();
        panel.window->setVisible(task.any(4) > 0);
        VirtualTime::advance(task.anyTime(1 + task.any(5000)));
        panel.useForAWhile(task);
        if (task.any(2) == 0) {
            step("destroying the panel before its window");
            panel.destroyPanel();
            VirtualTime::advance(task.anyTime(100));
        }
        step("destroying the window, with the panel if there still is one");
        panel.destroyWindow();
        VirtualTime::advance(1s);
    }
}

static void checkOpening(const Task &task)
{
    for (const auto &status : {factoryStatus, Status{0, 1, 2, 2, 3}, Status{0, 0, 1, 1, 1}}) {
        CheckedPanel &panel = CheckedPanel::load(task);
        panel.camera.setStatus(status);
        panel.api->name();
        panel.api->getCurrentParams();
        VirtualTime::advance(2s);
        const QVector<Request> early = panel.takeRequests();
        expect(early.isEmpty(), "no request before insertWidget", early.value(0).inWords());
        panel.insert();
        bool hasRead = false;
        const QVector<Request> requests = panel.takeRequests();
        for (const Request &request : requests) {
            hasRead = hasRead || request.kind == ChannelRequest::Extension;
            const QByteArray bytes = request.bytes();
            // What the camera knows no command for it has not reported either.
            const bool isRepeated =
                hasRead && request.kind == ChannelRequest::Extension &&
                refusal(true, commandSelector, bytes).isEmpty() &&
                static_cast<quint8>(bytes.at(valueOffset)) == status.at(fieldOf(bytes));
            expect(request.asks() || isRepeated,
                   "in insertWidget reads, and writes of what was read", request.inWords());
        }
        panel.destroyWindow();
    }
}

static void checkContainers(const Task &task)
{
    static constexpr const char *layouts[] = {"a vertical box", "a horizontal box", "a grid",
                                              "a form",         "a stack",          "no layout"};
    for (int variant = 0; variant < 24; ++variant) {
        CheckedPanel &panel = CheckedPanel::load(task);
        delete panel.container->layout();
        QStackedLayout *stack = nullptr;
        switch (variant / 4) {
        case 0:
            new QVBoxLayout(panel.container);
            break;
        case 1:
            new QHBoxLayout(panel.container);
            break;
        case 2:
            new QGridLayout(panel.container);
            break;
        case 3:
            new QFormLayout(panel.container);
            break;
        case 4:
            stack = new QStackedLayout(panel.container);
            break;
        }
        panel.language = variant / 2 % 2;
        panel.window->setVisible(variant % 2 == 0);
        const QString situation =
            QString("in %1, %2, language %3")
                .arg(layouts[variant / 4], variant % 2 == 0 ? "shown" : "hidden at first",
                     panel.language.toString());
        step(situation);
        panel.insert();
        VirtualTime::advance(200ms);
        panel.window->show();
        if (stack)
            stack->setCurrentIndex(stack->count() - 1);
        VirtualTime::advance(200ms);
        expect(!panel.controls().isEmpty(), "visible widgets " + situation, "none");
        panel.destroyWindow();
    }
}

static void checkThawed(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    const auto expectThawed = [&] {
        VirtualTime::advance(1s);
        expect(panel.window->updatesEnabled() && panel.container->updatesEnabled(),
               "a window that is painted a second later", "a frozen one");
    };
    expectThawed();
    for (int use = 0; use < 40; ++use) {
        panel.useAny(task);
        expectThawed();
        panel.camera.setValue(settingFields.at(task.any(4)), static_cast<quint8>(task.any(4)));
        expectThawed();
    }
    step("resetToDefault");
    panel.api->resetToDefault();
    expectThawed();
    panel.useAny(task);
    step("destroying the panel before its window");
    panel.destroyPanel();
    expectThawed();
}

static void checkLeftovers(const Task &task)
{
    for (int life = 0; life < 10; ++life) {
        CheckedPanel &panel = CheckedPanel::load(task);
        const QWidgetList before = panel.window->findChildren<QWidget *>() << panel.window;
        panel.insert();
        panel.window->show();
        panel.useForAWhile(task);
        step("destroying the panel before its window");
        panel.destroyPanel();
        VirtualTime::advance(1s);
        const QWidgetList after =
            panel.window->findChildren<QWidget *>() + QApplication::topLevelWidgets();
        for (QWidget *const widget : after) {
            expect(before.contains(widget) || (widget->isWindow() && widget->isHidden()),
                   "no widget left behind",
                   QString("a %1 \"%2\"")
                       .arg(widget->metaObject()->className(), widget->objectName()));
        }
        expect(panel.container->layout()->isEmpty(), "an empty layout", "items in it");
        expect((panel.window->styleSheet() + qApp->styleSheet()).isEmpty(), "no style sheet",
               "one");
        panel.destroyWindow();
    }
}

static void checkAfterDeath(const Task &task)
{
    for (int life = 0; life < 20; ++life) {
        CheckedPanel &panel = CheckedPanel::open(task);
        panel.useForAWhile(task);
        if (task.any(2) == 0)
            panel.destroyPanel();
        panel.destroyWindow();
        panel.takeRequests();
        VirtualTime::advance(10s);
        const QVector<Request> late = panel.takeRequests();
        expect(late.isEmpty(), "no request after the end of the panel", late.value(0).inWords());
    }
}

static void checkLives(const Task &task)
{
    constexpr int warmUp = 20;
    constexpr int lives = 100;
    // A panel may leave its catalog installed, and what recorded its requests stays.
    constexpr long bytesPerLife = 4096;
    std::size_t bytes = 0;
    int widgets = 0;
    for (int life = 0; life < warmUp + lives; ++life) {
        if (life == warmUp) {
            bytes = mallinfo2().uordblks;
            widgets = QApplication::allWidgets().size();
        }
        CheckedPanel::open(task).destroyWindow();
        VirtualTime::advance(200ms);
    }
    widgets = QApplication::allWidgets().size() - widgets;
    expect(widgets <= 0, "as many widgets as before",
           QString("%1 more after %2 lives").arg(widgets).arg(lives));
    const long growth = static_cast<long>(mallinfo2().uordblks - bytes) / lives;
    expect(growth <= bytesPerLife, QString("at most %1 bytes a life").arg(bytesPerLife),
           QString::number(growth));
}

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
        {"containers-144", "The same at 144 dots per inch.", checkContainers, "containers", "144"},
        {"containers-192", "The same at 192 dots per inch.", checkContainers, "containers", "192"},
        {"thawed", "The window never stays frozen.", checkThawed, "opens"},
        {"leftovers", "It leaves nothing behind in the window.", checkLeftovers, "destruction"},
        {"after-death", "It requests nothing after its end.", checkAfterDeath, "destruction"},
        {"lives", "A hundred lives in a row leave no growth.", checkLives, "destruction"},
    };
}
