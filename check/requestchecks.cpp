// What goes over the channel, and what comes back.

#include "check.h"
#include "checkedpanel.h"
#include "virtualtime.h"

#include <QThread>

#include <algorithm>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

/// What is wrong with a request; empty if nothing is.
static QString malformation(const Request &request)
{
    const int type = request.record.userType();
    if (request.kind == ChannelRequest::Setting)
        return type == qMetaTypeId<SettingData>() ? "" : "no SettingData";
    if (request.kind == ChannelRequest::Camera)
        return type == qMetaTypeId<CameraData>() ? "" : "no CameraData";
    if (request.kind != ChannelRequest::Extension)
        return QString("the kind %1").arg(request.kind);
    if (type != qMetaTypeId<ExtensionUnit>())
        return "no ExtensionUnit";

    const ExtensionUnit unit = request.unit();
    if (unit.length > sizeof unit.data || (!unit.write && unit.length != 0))
        return QString("a length of %1").arg(unit.length);
    const auto isSet = [](quint8 byte) {
        return byte != 0;
    };
    if (std::any_of(unit.data + unit.length, std::end(unit.data), isSet))
        return "bytes beyond the length";
    QString problem = framingProblem(unit.write, unit.selector, request.bytes());
    if (!unit.write || !problem.isEmpty())
        return problem;
    const int valueEnd = valueOffset + unit.data[valueOffset - 1];
    return std::any_of(unit.data + valueEnd, std::end(unit.data), isSet) ? "bytes beyond the value"
                                                                         : "";
}

static void checkRequests(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    const auto expectWellFormed = [&panel] {
        const QVector<Request> requests = panel.takeRequests();
        for (const Request &request : requests) {
            const QString problem = malformation(request);
            QString came = request.inWords();
            if (!came.contains(problem))
                came += ": " + problem;
            expect(problem.isEmpty(), "well-formed requests", came);
        }
    };
    expectWellFormed();
    // Twice: what the first round shows takes part in the second.
    for (int round = 0; round < 2 * CheckedPanel::WayCount; ++round) {
        const QWidgetList controls = panel.controls();
        for (QWidget *const control : controls) {
            if (panel.controls().contains(control))
                panel.use(control, static_cast<CheckedPanel::Way>(round % CheckedPanel::WayCount));
            VirtualTime::advance(300ms);
            expectWellFormed();
        }
    }
    step("resetToDefault");
    panel.api->resetToDefault();
    VirtualTime::advance(1s);
    expectWellFormed();
}

static void checkQuiet(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    panel.takeRequests();
    for (int change = 0; change < 60; ++change) {
        // Now and then a value that means nothing.
        panel.camera.setValue(settingFields.at(task.any(4)), static_cast<quint8>(task.any(5)));
        VirtualTime::advance(task.anyTime(3000));
        const QVector<Request> sent = panel.takeRequests(false);
        expect(sent.isEmpty(), "nothing sent while only the camera changes",
               sent.value(0).inWords());
    }
}

static void checkGuiThread(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    for (int use = 0; use < 25; ++use) {
        panel.useAny(task);
        VirtualTime::advance(100ms);
        QThread::msleep(20); // other threads have real time
    }
    const QVector<Request> requests = panel.takeRequests();
    for (const Request &request : requests)
        expect(request.onGuiThread, "requests of the GUI thread alone",
               request.inWords() + " of another");
}

/// An answer to the get `unit` that no sound host gives.
static QVariant oddAnswer(const QString &kind, ExtensionUnit unit, const Task &task)
{
    static bool nested = false;
    if (kind == "missing")
        return {};
    if (kind == "foreign")
        return QVector<QVariant>{8, "8", QVariantMap(), QVariant::fromValue(SettingData())}.at(
            task.any(4));
    std::generate(std::begin(unit.data), std::end(unit.data), [&] { return task.any(4); });
    unit.length = 60;
    if (kind == "empty") {
        unit.length = 0;
    } else if (kind == "short") {
        unit.length = 1 + static_cast<quint64>(task.any(4));
    } else if (kind == "too long") {
        unit.length = ~quint64(0);
    } else if (kind == "random") {
        std::generate(std::begin(unit.data), std::end(unit.data), [&] { return task.any(256); });
        unit.selector = task.any(256);
    } else if (kind == "late") {
        VirtualTime::now += 400ms;
    } else if (kind == "given after other events" && !std::exchange(nested, true)) {
        VirtualTime::advance(300ms);
        nested = false;
    }
    return QVariant::fromValue(unit);
}

static void checkAnswers(const Task &task)
{
    for (const char *const kind : {"missing", "empty", "short", "too long", "foreign", "random",
                                   "late", "given after other events"}) {
        for (const bool atStart : {true, false}) {
            step(QString("answers that are ") + kind);
            CheckedPanel &panel = CheckedPanel::load(task);
            panel.language = QVector<QVariant>{1, 0, {}, "en", QVariantMap()}.at(task.any(5));
            const auto answer = [&](const ExtensionUnit &unit) {
                return oddAnswer(kind, unit, task);
            };
            if (atStart)
                panel.answer = answer;
            panel.window->show();
            panel.insert();
            VirtualTime::advance(6s);
            panel.answer = answer;
            for (int use = 0; use < 10; ++use) {
                panel.useAny(task);
                VirtualTime::advance(700ms);
            }
            panel.destroyWindow();
        }
    }
}

static void checkRandomUse(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    for (int use = 0; use < 500; ++use) {
        switch (task.any(8)) {
        case 0:
            panel.camera.setValue(settingFields.at(task.any(4)),
                                  static_cast<quint8>(task.any(256)));
            break;
        case 1:
            panel.window->resize(200 + task.any(800), 200 + task.any(1200));
            break;
        case 2:
            panel.window->setVisible(task.any(4) > 0);
            break;
        case 3:
            step("resetToDefault");
            panel.api->resetToDefault();
            break;
        default:
            panel.useAny(task);
        }
        VirtualTime::advance(task.anyTime(1 + task.any(1000)));
    }
}

std::vector<Check> requestChecks()
{
    return {
        {"requests", "Each request is well-formed.", checkRequests, "opens"},
        {"quiet", "A camera that changes itself is sent nothing.", checkQuiet, "opens"},
        {"gui-thread", "It calls the channel on the GUI thread only.", checkGuiThread, "opens"},
        {"answers", "It survives answers that are missing, short, empty, foreign, random or late.",
         checkAnswers, "destruction"},
        {"random-use", "It survives random use.", checkRandomUse, "opens"},
    };
}
