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
    host.load();
    host.expectRequests("well-formed requests",
                        [](const Request &request) { return request.problem().isEmpty(); });
    host.insert();
    host.window->show();
    host.live(6s);
    for (int round = 0; round < 3; ++round)
        host.useAll(300ms);
    host.reset();
    // Real time, for requests that another thread makes now and then.
    for (int wait = 0; wait < 25; ++wait) {
        host.live(100ms);
        QThread::msleep(100);
    }
}

static void checkQuiet(Host &host)
{
    host.open();
    const auto changeCamera = [&](std::chrono::milliseconds pause) {
        step("the camera changes itself");
        host.expectRequests("nothing sent while only the camera changes", &Request::asks);
        // Some of these values have no meaning.
        for (const Field field : {Type, Mode, Composition})
            host.camera.setValue(field, static_cast<quint8>(host.any(5)));
        host.camera.setValue(Tracking, host.camera.status().at(Tracking) == 0 ? 1 : 0);
        host.live(pause);
        host.expectRequests({}, nullptr);
    };
    for (int change = 0; change < 60; ++change)
        changeCamera(host.anyTime(3000));
    // A panel may remember what the user chose.
    host.useAll(2s, [&] { changeCamera(1500ms); });
}

/// An unusual answer of this kind to the read `unit`.
static QVariant oddAnswer(const QString &kind, ExtensionUnit unit, Host &host)
{
    if (kind == "missing")
        return {};
    if (kind == "foreign")
        return QVector<QVariant>{8, "8", QVariantMap(), QVariant::fromValue(SettingData())}.at(
            host.any(4));
    const int values = kind == "random" ? 256 : 4;
    std::generate(std::begin(unit.data), std::end(unit.data), [&] { return host.any(values); });
    unit.length = kind == "empty"   ? 0
                  : kind == "short" ? 1 + static_cast<quint64>(host.any(4))
                  : kind == "too long"
                      ? QVector<quint64>{256, 4096, 1 << 24, ~quint64(0)}.at(host.any(4))
                      : 60;
    if (kind == "late")
        VirtualTime::now += 400ms;
    return QVariant::fromValue(unit);
}

static void checkAnswers(Host &host)
{
    const QStringList kinds{"missing", "empty", "short", "too long", "foreign", "random", "late"};
    for (const QString &kind : kinds) {
        for (const bool atStart : {true, false}) {
            host.load();
            host.language = QVector<QVariant>{1, 0, {}, "en", QVariantMap()}.at(host.any(5));
            const auto answer = [&](const ExtensionUnit &unit) {
                return oddAnswer(kind, unit, host);
            };
            const auto begin = [&] {
                host.readAnswer = answer;
                if (kind == "missing" || kind == "empty" || kind == "foreign")
                    host.expectRequests("nothing sent to a camera that does not answer",
                                        &Request::asks);
            };
            if (atStart)
                begin();
            host.window->show();
            host.insert(", answers that are " + kind);
            host.live(6s);
            begin();
            host.live(6s);
            host.expectRequests({}, nullptr);
            for (int use = 0; use < 20; ++use)
                host.useAny();
        }
    }
}

static void checkClicks(Host &host)
{
    host.load();
    host.duringRequest = [&] {
        VirtualTime::advance(50ms);
        host.useAny(0);
    };
    host.window->show();
    host.insert();
    host.live(6s);
    for (int used = 0; used < 450 && host.hasTime(); used += 1 + host.controls().size())
        host.useAll(100ms);
}

static void checkRandomUse(Host &host)
{
    host.open();
    host.useAll();
    for (int use = 0; use < 400 && host.hasTime(); ++use) {
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
        {"requests", "Each request is well-formed and on the GUI thread.", checkRequests, "opens"},
        {"quiet", "It sends nothing when the camera changes by itself.", checkQuiet, "opens"},
        {"answers", "It survives missing, short, empty, foreign, random and late answers.",
         checkAnswers, "destruction"},
        {"clicks", "It survives clicks while it waits for an answer.", checkClicks, "opens"},
        {"random-use", "It survives random use.", checkRandomUse, "opens"},
    };
}
