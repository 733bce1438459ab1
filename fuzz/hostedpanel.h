#pragma once

#include "controltrackingplugin.h"
#include "fuzzing.h"
#include "ui_root.h"

#include <QTranslator>
#include <QVBoxLayout>

#include <chrono>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

struct PanelInternals
{
    static Ui_root *ui(ControlTrackingPlugin &panel) { return panel.ui; }
    static QSharedPointer<M24_Extension> &areaTable(ControlTrackingPlugin &panel)
    {
        return panel.areaTable;
    }
};

/// The clock of Qt's timers and animations, moved by the fuzzer alone. The fuzzing engine goes by
/// the time of day, which stays real.
inline std::chrono::milliseconds now = std::chrono::hours(1000);

extern "C" Q_DECL_EXPORT int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (clock != CLOCK_MONOTONIC)
        return int(syscall(SYS_clock_gettime, clock, time));
    *time = {now / std::chrono::seconds(1),
             now % std::chrono::seconds(1) / std::chrono::nanoseconds(1)};
    return 0;
}

inline void advance(std::chrono::milliseconds span)
{
    constexpr std::chrono::milliseconds step(50);
    for (const auto end = now + span; now < end;) {
        now = std::min(now + step, end);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

// A panel's catalog stays for the life of the process, which here sees any number of panels.
inline QTranslator *catalog = nullptr;

bool QCoreApplication::installTranslator(QTranslator *translator)
{
    static const auto original = reinterpret_cast<bool (*)(QTranslator *)>(
        dlsym(RTLD_NEXT, "_ZN16QCoreApplication17installTranslatorEP11QTranslator"));
    catalog = translator;
    return original(translator);
}

/// A host's window with a container, and a panel to be put into it.
struct HostedPanel
{
    HostedPanel()
    {
        (new QVBoxLayout(&window))->addWidget(container);
        new QVBoxLayout(container);
    }

    ~HostedPanel() { QCoreApplication::removeTranslator(catalog); }

    Ui_root *ui() const { return PanelInternals::ui(*panel); }

    QWidget window;
    QWidget *container = new QWidget;
    ControlTrackingPlugin *panel = new ControlTrackingPlugin; // goes with the container
};

/// What a host may answer, whatever it was asked.
inline QVariant anyAnswer(Input &input)
{
    switch (input.take()) {
    case 0:
        return {};
    case 1:
        return input.take<int>();
    case 2:
        return input.take<qint64>();
    case 3:
        return input.take<double>();
    case 4:
        return QString::fromUtf8(input.take(input.take()));
    case 5:
        return input.take(input.take());
    case 6:
        return QVariantList{anyAnswer(input)};
    case 7:
        return QVariant::fromValue(SettingData{"language", anyAnswer(input)});
    case 8:
        return QVariant::fromValue(CameraData{nullptr, true, 1, 1, 1});
    default:
        ExtensionUnit unit;
        const auto length = input.take();
        unit.length = length < 0xFF ? length : input.take<quint64>();
        // Nothing may depend on the rest.
        std::fill(std::begin(unit.data), std::end(unit.data), quint8(0xA5));
        const QByteArray status = input.take(5);
        std::copy(status.cbegin(), status.cend(), unit.data);
        unit.write = true;
        return QVariant::fromValue(unit);
    }
}
