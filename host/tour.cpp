#include "tour.h"

#include "commandchannel.h"
#include "simulatedcamera.h"
#include "transfertext.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <iterator>

using namespace TrackingProtocol;

namespace {

using namespace std::chrono_literals;

constexpr auto checkInterval = 50ms;
/// How often in a row camera and panel must agree: for longer than a switch slides, during which it
/// takes no press, and than the title row's pause between two presses. Counted, not timed: a slide
/// ends only when the event loop runs.
constexpr int checksToAgree = 8;
/// The first poll comes some four seconds after the panel is set up.
constexpr auto longestStep = 6s;
/// How many transfers a step may wait for: a read under way, the old value and the new one of two
/// settings, a read, and the next, in whose time the panel is told.
constexpr int transfersPerStep = 7;
/// How long the first transfer may take.
constexpr auto longestTransfer = 10s;

/// In a step's expectation: any composition but "off".
constexpr quint8 anyComposition = 0xFF;

/// One step: the press of a control, or without one a change to `expected` on the camera's side.
struct Step
{
    const char *text;
    const char *control;
    Status expected; ///< the camera's state after the step; Reserved is ignored
    bool open;       ///< whether the panel's body is shown after the step
};

constexpr Step steps[] = {
    {"Host: reset to defaults", "pb_reset", {0, 1, 0, 1, 0}, true},
    {"User: title row, to collapse the panel", "frame_title", {0, 1, 0, 1, 0}, false},
    {"User: title row, to expand it again", "frame_title", {0, 1, 0, 1, 0}, true},
    {"User: type Hand", "rb_hand", {0, 1, 1, 1, 0}, true},
    {"User: type Board", "rb_whiteboard", {0, 1, 2, 1, 0}, true},
    {"User: type Basic", "rb_normal", {0, 1, 0, 1, 0}, true},
    {"User: mode Sport", "rb_sport", {0, 1, 0, 2, 0}, true},
    {"User: mode Standard", "rb_normal_mode", {0, 1, 0, 1, 0}, true},
    {"User: composition on", "sw_picture_mode", {0, 1, 0, 1, anyComposition}, true},
    {"User: composition Full Body", "wg_full_body", {0, 1, 0, 1, 2}, true},
    {"User: composition Bodies", "wg_multi_body", {0, 1, 0, 1, 3}, true},
    {"User: composition Half Body", "wg_half_body", {0, 1, 0, 1, 1}, true},
    {"User: composition off", "sw_picture_mode", {0, 1, 0, 1, 0}, true},
    {"User: composition on again", "sw_picture_mode", {0, 1, 0, 1, 1}, true},
    {"User: title row, to collapse the panel", "frame_title", {0, 1, 0, 1, 1}, false},
    {"User: title row, to expand it again", "frame_title", {0, 1, 0, 1, 1}, true},
    {"User: tracking off", "sw_title", {0, 0, 0, 1, 1}, false},
    {"User: title row, which stays collapsed", "frame_title", {0, 0, 0, 1, 1}, false},
    {"Camera: tracking on", nullptr, {0, 1, 0, 1, 1}, true},
    {"Camera: type Hand", nullptr, {0, 1, 1, 1, 1}, true},
    {"Camera: type Basic", nullptr, {0, 1, 0, 1, 1}, true},
    {"Camera: tracking off", nullptr, {0, 0, 0, 1, 1}, false},
    {"User: tracking on", "sw_title", {0, 1, 0, 1, 1}, true},
    {"User: mode Sport", "rb_sport", {0, 1, 0, 2, 1}, true},
    {"User: type Hand", "rb_hand", {0, 1, 1, 2, 1}, true},
    {"Host: reset to defaults", "pb_reset", {0, 1, 0, 1, 0}, true},
};
constexpr int stepCount = static_cast<int>(std::size(steps));

/// A button that is checked exactly while the camera has the value.
struct ValueButton
{
    const char *name;
    Field field;
    quint8 value;
};

constexpr ValueButton valueButtons[] = {
    {"rb_normal", Type, 0},
    {"rb_hand", Type, 1},
    {"rb_whiteboard", Type, 2},
    {"rb_normal_mode", Mode, 1},
    {"rb_sport", Mode, 2},
    {"wg_half_body", Composition, 1},
    {"wg_full_body", Composition, 2},
    {"wg_multi_body", Composition, 3},
};

} // namespace

Tour::Tour(SimulatedCamera *simulated, CommandChannel &channel, QWidget &window)
    : m_simulated(simulated)
    , m_window(window)
    , m_out(stdout)
{
    m_timer.setInterval(checkInterval);
    connect(&m_timer, &QTimer::timeout, this, &Tour::checkStep);
    connect(&channel, &CommandChannel::transferred, this, &Tour::takeTransfer);
    m_out << "Set-up of the panel\n" << flush;
    m_sinceStep.start();
    m_timer.start();
}

void Tour::takeTransfer(const Transfer &transfer)
{
    if (transfer.selector != 0 && transfer.outcome != Transfer::Superseded)
        m_slowest = std::max(m_slowest, transfer.duration);
    if (transfer.isStatusRead() && transfer.bytes.size() >= FieldCount)
        m_reported = transfer.bytes;
    printTransfer(transfer);
}

void Tour::printTransfer(const Transfer &transfer)
{
    const QString result = resultText(transfer);
    if (transfer.isStatusRead()) {
        if (transfer.bytes == m_printed && result == m_printedResult) {
            ++m_repeatedReads;
            return;
        }
        m_printed = transfer.bytes;
        m_printedResult = result;
    }
    QString address = requestText(transfer);
    if (transfer.selector != 0)
        address += QLatin1Char(' ') + QString::number(transfer.selector);
    m_out << "    " << directionText(transfer) << ' ' << address.leftJustified(12)
          << firstBytes(transfer).leftJustified(19) << transfer.meaning;
    if (transfer.outcome != Transfer::Succeeded)
        m_out << ": " << result;
    m_out << '\n' << flush;
}

bool Tour::nextStep()
{
    do
        ++m_step;
    while (m_step < stepCount && !steps[m_step].control && !m_simulated);
    return m_step < stepCount;
}

void Tour::beginStep()
{
    const Step &step = steps[m_step];
    m_out << '\n' << m_step + 1 << ". " << step.text << '\n' << flush;
    m_expected = step.expected;
    if (!step.control) {
        m_expected[Reserved] = m_simulated->status()[Reserved];
        m_simulated->setStatus(m_expected);
    } else if (!press(QString::fromLatin1(step.control))) {
        m_out << "    " << step.control << " is not there to be pressed\n" << flush;
    }
    m_sinceStep.start();
    m_agreed = 0;
}

void Tour::checkStep()
{
    // A frozen window is about to be laid out again; a user would not get at it either.
    if (!m_window.updatesEnabled())
        return;
    const QStringList found = differences();
    m_agreed = found.isEmpty() ? m_agreed + 1 : 0;
    const auto patience = m_slowest < 0 ? longestTransfer : transfersPerStep * m_slowest * 1ms;
    if (m_agreed < checksToAgree && m_sinceStep.elapsed() * 1ms < longestStep + patience)
        return;

    if (m_repeatedReads > 0)
        m_out << "    status reads that brought nothing new: " << m_repeatedReads << '\n';
    m_repeatedReads = 0;
    for (const QString &difference : found)
        m_out << "  DIFFERENT: " << difference << '\n';
    if (found.isEmpty()) {
        m_out << "  camera and panel agree: " << describeStatus(m_reported) << '\n';
        if (nextStep()) {
            beginStep();
            return;
        }
    }
    m_timer.stop();
    // Every step builds on the one before it: after a difference the rest would tell nothing.
    m_out << (found.isEmpty() ? "\nThe tour is done: camera and panel agreed after every step.\n"
                              : "\nThe tour ends here: camera and panel differ.\n")
          << "longest stall of the window: " << m_stalls.longest() / 1ms << " ms\n"
          << flush;
    Q_EMIT finished(found.isEmpty());
}

bool Tour::press(const QString &name)
{
    const QPointer<QWidget> control = m_window.findChild<QWidget *>(name);
    if (!control || !control->isVisible() || !control->isEnabled())
        return false;
    const QPoint center = control->rect().center();
    const QPoint inWindow = control->mapTo(&m_window, center);
    const QPoint onScreen = control->mapToGlobal(center);
    QMouseEvent pressEvent(QEvent::MouseButtonPress, center, inWindow, onScreen, Qt::LeftButton,
                           Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(control, &pressEvent);
    QMouseEvent releaseEvent(QEvent::MouseButtonRelease, center, inWindow, onScreen, Qt::LeftButton,
                             Qt::NoButton, Qt::NoModifier);
    if (control)
        QCoreApplication::sendEvent(control, &releaseEvent);
    return true;
}

QStringList Tour::differences() const
{
    if (m_reported.isEmpty())
        return {QStringLiteral("the camera has reported nothing")};
    Status status;
    std::copy_n(m_reported.cbegin(), status.size(), status.begin());
    QStringList found;
    const auto expect = [&found](const QString &what, const QString &actual,
                                 const QString &wanted) {
        if (actual != wanted)
            found += QStringLiteral("%1 is %2 instead of %3").arg(what, actual, wanted);
    };

    const Status &wantedStatus = m_step < 0 ? status : m_expected;
    for (const auto field : settingFields) {
        const bool free = wantedStatus.at(field) == anyComposition && status.at(field) != 0;
        expect(fieldName(field), valueName(field, status.at(field)),
               valueName(field, free ? status.at(field) : wantedStatus.at(field)));
    }

    const auto checkedWord = [](bool checked) {
        return checked ? QStringLiteral("checked") : QStringLiteral("unchecked");
    };
    for (const ValueButton &entry : valueButtons) {
        const QString name = QString::fromLatin1(entry.name);
        const auto *button = m_window.findChild<QAbstractButton *>(name);
        // Without composition its buttons keep the choice for the next time.
        if (entry.field != Composition || status[Composition] != 0) {
            expect(name, checkedWord(button && button->isChecked()),
                   checkedWord(status.at(entry.field) == entry.value));
        }
    }

    const auto expectShown = [&](const char *row, bool shown) {
        const auto *frame = m_window.findChild<QWidget *>(QString::fromLatin1(row));
        const auto word = [](bool yes) {
            return yes ? QStringLiteral("shown") : QStringLiteral("hidden");
        };
        expect(QString::fromLatin1(row), word(frame && frame->isVisible()), word(shown));
    };
    const bool open = m_step < 0 ? status[Tracking] != 0 : steps[m_step].open;
    const bool basic = open && status[Type] == 0;
    expectShown("frame_spliter", open);
    expectShown("frame_picture_title", basic);
    expectShown("frame_picture_mode", basic && status[Composition] != 0);
    return found;
}
