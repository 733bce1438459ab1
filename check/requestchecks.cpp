// What goes over the channel, and what comes back.

#include "check.h"
#include "checkedpanel.h"
#include "virtualtime.h"

#include <QApplication>
#include <QThread>
#include <QVector>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

/// What is wrong with a request; empty if nothing is.
QString malformation(const Request &request)
{
    const auto hasRecord = [&](int type) {
        return request.record.userType() == type;
    };
    switch (request.kind) {
    case ChannelRequest::Setting:
        return hasRecord(qMetaTypeId<SettingData>()) ? QString() : QStringLiteral("no SettingData");
    case ChannelRequest::Camera:
        return hasRecord(qMetaTypeId<CameraData>()) ? QString() : QStringLiteral("no CameraData");
    case ChannelRequest::Extension:
        break;
    default:
        return QStringLiteral("the kind %1").arg(request.kind);
    }
    if (!hasRecord(qMetaTypeId<ExtensionUnit>()))
        return QStringLiteral("no ExtensionUnit");
    const auto unit = request.record.value<ExtensionUnit>();
    if (unit.length > sizeof unit.data || (unit.write && unit.length == 0))
        return QStringLiteral("a length of %1").arg(unit.length);
    if (!unit.write && unit.length != 0)
        return QStringLiteral("a read with a length");
    if (std::any_of(unit.data + unit.length, std::end(unit.data), [](quint8 byte) { return byte; }))
        return QStringLiteral("bytes beyond the length");
    const QByteArray bytes = request.bytes();
    const QString problem = TrackingProtocol::framingProblem(unit.write, unit.selector, bytes);
    if (!unit.write || !problem.isEmpty())
        return problem;
    const int end = TrackingProtocol::valueOffset +
                    static_cast<quint8>(bytes.at(TrackingProtocol::valueOffset - 1));
    const QByteArray padding = bytes.mid(end);
    return padding.count('\0') == padding.size() ? QString()
                                                 : QStringLiteral("bytes beyond the value");
}

void checkRequests(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    // Twice: what the first round shows takes part in the second.
    for (int round = 0; round < 2; ++round) {
        for (const int way :
             {CheckedPanel::Middle, CheckedPanel::Beginning, CheckedPanel::SpaceBar}) {
            const QWidgetList controls = panel.controls();
            for (QWidget *const control : controls) {
                if (panel.controls().contains(control))
                    panel.use(control, static_cast<CheckedPanel::Way>(way));
                VirtualTime::advance(300ms);
            }
        }
    }
    step(QStringLiteral("resetToDefault"));
    panel.api().resetToDefault();
    VirtualTime::advance(1s);
    const QVector<Request> requests = panel.takeRequests();
    for (const Request &request : requests) {
        const QString problem = malformation(request);
        expect(problem.isEmpty(), QStringLiteral("well-formed requests"),
               request.inWords() + QStringLiteral(": ") + problem);
    }
}

void checkQuiet(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    panel.takeRequests();
    for (int change = 0; change < 60; ++change) {
        const auto field = TrackingProtocol::settingFields.at(task.any(4));
        // Now and then a value that means nothing.
        panel.camera().setValue(field, static_cast<quint8>(task.any(5)));
        VirtualTime::advance(std::chrono::milliseconds(task.any(3000)));
        const QVector<Request> sent = panel.takeSent();
        expect(sent.isEmpty(), QStringLiteral("nothing sent while only the camera changes"),
               inWords(sent));
    }
}

void checkGuiThread(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    // Other threads have real time.
    for (int use = 0; use < 25; ++use) {
        panel.useAny(task);
        VirtualTime::advance(100ms);
        QThread::msleep(20);
    }
    const QVector<Request> requests = panel.takeRequests();
    for (const Request &request : requests) {
        expect(request.onGuiThread, QStringLiteral("requests of the GUI thread alone"),
               request.inWords() + QStringLiteral(" of another thread"));
    }
}

/// An answer to a read that no sound host gives.
struct OddAnswer
{
    const char *name;
    std::function<QVariant(const Task &, ExtensionUnit)> give;
};

const std::vector<OddAnswer> &oddAnswers()
{
    const auto ofLength = [](quint64 length, ExtensionUnit unit) {
        std::fill_n(unit.data, std::min<quint64>(length, sizeof unit.data), quint8(1));
        unit.length = length;
        return QVariant::fromValue(unit);
    };
    static const std::vector<OddAnswer> answers = {
        {"missing",
         [](const Task &, const ExtensionUnit &) {
             return QVariant();
         }},
        {"empty",
         [=](const Task &, const ExtensionUnit &unit) {
             return ofLength(0, unit);
         }},
        {"short",
         [=](const Task &task, const ExtensionUnit &unit) {
             return ofLength(1 + task.any(4), unit);
         }},
        {"longer than their bytes",
         [=](const Task &, const ExtensionUnit &unit) {
             return ofLength(~quint64(0), unit);
         }},
        {"a number",
         [](const Task &task, const ExtensionUnit &) {
             return QVariant(task.any(1000));
         }},
        {"a text",
         [](const Task &, const ExtensionUnit &) {
             return QVariant(QStringLiteral("8"));
         }},
        {"another record",
         [](const Task &, const ExtensionUnit &) {
             return QVariant::fromValue(CameraData{});
         }},
        {"random",
         [](const Task &task, ExtensionUnit unit) {
             for (quint8 &byte : unit.data)
                 byte = static_cast<quint8>(task.any(256));
             unit.length = static_cast<quint64>(task.any(256));
             unit.selector = task.any(256);
             return QVariant::fromValue(unit);
         }},
        {"late",
         [=](const Task &, const ExtensionUnit &unit) {
             VirtualTime::now += 400ms;
             return ofLength(60, unit);
         }},
        {"late, with an event loop meanwhile",
         [=](const Task &, const ExtensionUnit &unit) {
             VirtualTime::now += 300ms;
             VirtualTime::catchUp();
             return ofLength(60, unit);
         }},
    };
    return answers;
}

void checkAnswers(const Task &task)
{
    const QVector<QVariant> languages = {1, 0, QVariant(), QStringLiteral("en"), QVariantMap()};
    for (const OddAnswer &odd : oddAnswers()) {
        for (const bool atStart : {true, false}) {
            step(QStringLiteral("answers that are ") + QString::fromLatin1(odd.name));
            CheckedPanel &panel = CheckedPanel::load(task);
            panel.language = languages.at(task.any(languages.size()));
            const auto give = [&](const ExtensionUnit &unit) {
                return odd.give(task, unit);
            };
            if (atStart)
                panel.answer = give;
            panel.window()->show();
            panel.insert();
            VirtualTime::advance(2s);
            panel.answer = give;
            for (int use = 0; use < 10; ++use) {
                panel.useAny(task);
                VirtualTime::advance(700ms);
            }
            panel.answer = {};
            VirtualTime::advance(2s);
            panel.destroyWindow();
        }
    }
}

void checkRandomUse(const Task &task)
{
    CheckedPanel &panel = CheckedPanel::open(task);
    for (int use = 0; use < 500; ++use) {
        switch (task.any(8)) {
        case 0:
            panel.camera().setValue(TrackingProtocol::settingFields.at(task.any(4)),
                                    static_cast<quint8>(task.any(256)));
            break;
        case 1:
            panel.window()->resize(200 + task.any(800), 200 + task.any(1200));
            break;
        case 2:
            panel.window()->setVisible(task.any(4) > 0);
            break;
        case 3:
            step(QStringLiteral("resetToDefault"));
            panel.api().resetToDefault();
            break;
        default:
            panel.window()->show();
            panel.useAny(task);
        }
        VirtualTime::advance(std::chrono::milliseconds(task.any(10) * task.any(100)));
    }
}

} // namespace

std::vector<Check> requestChecks()
{
    return {
        {"requests", "Each request is well-formed.", checkRequests, "opens"},
        {"quiet", "A camera that changes itself is sent nothing.", checkQuiet, "opens"},
        {"gui-thread", "It calls the channel on the GUI thread only.", checkGuiThread, "opens"},
        {"answers", "It survives every answer: missing, short, empty, foreign, random, late.",
         checkAnswers, "destruction"},
        {"random-use", "It survives random use.", checkRandomUse, "opens"},
    };
}
