// Checks a panel's requests, and how it handles the answers.

#include "check.h"
#include "host.h"
#include "report.h"
#include "virtualtime.h"

#include <QThread>

#include <algorithm>

using namespace std::chrono_literals;
using namespace TrackingProtocol;

static void checkRequests(Host &host)
{
    host.open();
    const auto expectWellFormed = [&](std::chrono::milliseconds span) {
        host.live(span);
        host.expectRequests("well-formed requests",
                            [](const Request &request) { return request.problem().isEmpty(); });
    };
    expectWellFormed(6s);
    // Each round uses the controls in random ways, which may show or hide other controls.
    for (int round = 0; round < 12; ++round) {
        const QWidgetList controls = host.controls();
        for (QWidget *const control : controls) {
            if (host.controls().contains(control))
                host.use(control);
            expectWellFormed(300ms);
        }
    }
    host.reset();
    expectWellFormed(1s);
}

static void checkQuiet(Host &host)
{
    host.open();
    host.takeRequests();
    step("the camera changes itself");
    for (int change = 0; change < 60; ++change) {
        // Some of these values have no meaning.
        host.camera.setValue(settingFields.at(host.any(4)), static_cast<quint8>(host.any(5)));
        host.live(host.anyTime(3000));
        host.expectRequests("nothing sent while only the camera changes", &Request::asks);
    }
}

static void checkGuiThread(Host &host)
{
    host.open();
    for (int use = 0; use < 25; ++use) {
        host.useAny();
        QThread::msleep(20); // gives other threads real time
        host.expectRequests("requests on the GUI thread only",
                            [](const Request &request) { return request.onGuiThread; });
    }
}

/// An unusual answer of this kind to the read `unit`.
static QVariant oddAnswer(const QString &kind, ExtensionUnit unit, Host &host)
{
    static bool nested = false;
    if (kind == "missing")
        return {};
    if (kind == "foreign")
        return QVector<QVariant>{8, "8", QVariantMap(), QVariant::fromValue(SettingData())}.at(
            host.any(4));
    const int values = kind == "random" ? 256 : 4;
    std::generate(std::begin(unit.data), std::end(unit.data), [&] { return host.any(values); });
    unit.length = kind == "empty"      ? 0
                  : kind == "short"    ? 1 + static_cast<quint64>(host.any(4))
                  : kind == "too long" ? ~quint64(0)
                                       : 60;
    if (kind == "late")
        VirtualTime::now += 400ms;
    if (kind == "given after other events" && !std::exchange(nested, true)) {
        VirtualTime::advance(300ms);
        nested = false;
    }
    return QVariant::fromValue(unit);
}

static void checkAnswers(Host &host)
{
    for (const char *const kind : {"missing", "empty", "short", "too long", "foreign", "random",
                                   "late", "given after other events"}) {
        for (const bool atStart : {true, false}) {
            host.load();
            host.language = QVector<QVariant>{1, 0, {}, "en", QVariantMap()}.at(host.any(5));
            const auto answer = [&](const ExtensionUnit &unit) {
                return oddAnswer(kind, unit, host);
            };
            if (atStart)
                host.readAnswer = answer;
            host.window->show();
            step(QString("answers that are ") + kind);
            host.insert();
            host.live(6s);
            host.readAnswer = answer;
            for (int use = 0; use < 20; ++use)
                host.useAny();
        }
    }
}

static void checkRandomUse(Host &host)
{
    host.open();
    for (int use = 0; use < 400; ++use) {
        const int choice = host.any(8);
        if (choice == 0)
            host.camera.setValue(settingFields.at(host.any(4)), static_cast<quint8>(host.any(256)));
        else if (choice == 1)
            host.window->resize(200 + host.any(800), 200 + host.any(1200));
        else if (choice == 2)
            host.window->setVisible(host.any(4) > 0);
        else if (choice == 3)
            host.reset();
        host.useAny();
    }
}

std::vector<Check> requestChecks()
{
    return {
        {"requests", "Each request is well-formed.", checkRequests, "opens"},
        {"quiet", "It sends nothing when the camera changes by itself.", checkQuiet, "opens"},
        {"gui-thread", "It calls the channel on the GUI thread only.", checkGuiThread, "opens"},
        {"answers", "It survives missing, short, empty, foreign, random and late answers.",
         checkAnswers, "destruction"},
        {"random-use", "It survives random use.", checkRandomUse, "opens"},
    };
}
