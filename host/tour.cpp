#include "tour.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

#include <chrono>
#include <iterator>

namespace {

using namespace std::chrono_literals;

constexpr auto checkInterval = 50ms;
/// How long camera and panel must agree: longer than a switch slides, during which it takes no
/// press, and than the title row's pause between two presses.
constexpr auto shortestStep = 400ms;
/// The first poll comes some four seconds after the panel is set up.
constexpr auto longestStep = 6s;
/// How many transfers a step may wait for: those of the panel's set-up, or a poll and the next.
constexpr int transfersPerStep = 3;

/// In a step's expectation: any composition but "off".
constexpr quint8 anyComposition = 0xFF;

/// One step: the press of a control, or without one a change to `expected` on the camera's side.
struct Step
{
    const char *text;
    const char *control;
    SimulatedCamera::Status expected; ///< the camera's state after the step; Reserved is ignored
    bool open;                        ///< whether the panel's body is shown after the step
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
    SimulatedCamera::Field field;
    quint8 value;
};

constexpr ValueButton valueButtons[] = {
    {"rb_normal", SimulatedCamera::Type, 0},
    {"rb_hand", SimulatedCamera::Type, 1},
    {"rb_whiteboard", SimulatedCamera::Type, 2},
    {"rb_normal_mode", SimulatedCamera::Mode, 1},
    {"rb_sport", SimulatedCamera::Mode, 2},
    {"wg_half_body", SimulatedCamera::Composition, 1},
    {"wg_full_body", SimulatedCamera::Composition, 2},
    {"wg_multi_body", SimulatedCamera::Composition, 3},
};

} // namespace

Tour::Tour(SimulatedCamera &camera, CommandChannel &channel, QWidget &window)
    : m_camera(camera)
    , m_window(window)
    , m_out(stdout)
    , m_expected(camera.status())
{
    m_timer.setInterval(checkInterval);
    connect(&m_timer, &QTimer::timeout, this, &Tour::checkStep);
    connect(&channel, &CommandChannel::transferred, this, &Tour::printTransfer);
    m_out << "Set-up of the panel\n" << flush;
    m_sinceStep.start();
    m_sinceDifference.start();
    m_timer.start();
}

void Tour::printTransfer(const Transfer &transfer)
{
    if (transfer.isStatusRead()) {
        if (!m_lastStatus.isNull() && transfer.bytes == m_lastStatus) {
            ++m_repeatedReads;
            return;
        }
        m_lastStatus = transfer.bytes;
    }
    QString address = transfer.request;
    if (transfer.selector != 0)
        address += QLatin1Char(' ') + QString::number(transfer.selector);
    m_out << "    " << transfer.direction << ' ' << address.leftJustified(12)
          << transfer.firstBytes().leftJustified(19) << transfer.meaning << '\n'
          << flush;
}

void Tour::beginStep()
{
    const Step &step = steps[m_step];
    m_out << '\n' << m_step + 1 << ". " << step.text << '\n' << flush;
    m_expected = step.expected;
    m_expected[SimulatedCamera::Reserved] = m_camera.status()[SimulatedCamera::Reserved];
    if (!step.control) {
        m_camera.setStatus(m_expected);
    } else if (!press(QString::fromLatin1(step.control))) {
        m_out << "    " << step.control << " is not there to be pressed\n" << flush;
    }
    m_sinceStep.start();
    m_sinceDifference.start();
}

void Tour::checkStep()
{
    // A frozen window is about to be laid out again; a user would not get at it either.
    if (!m_window.updatesEnabled())
        return;
    const QStringList found = differences();
    if (!found.isEmpty())
        m_sinceDifference.start();
    const auto elapsed = [](const QElapsedTimer &timer) {
        return timer.elapsed() * 1ms;
    };
    if (elapsed(m_sinceDifference) < shortestStep &&
        elapsed(m_sinceStep) < longestStep + transfersPerStep * m_camera.delay())
        return;

    if (m_repeatedReads > 0)
        m_out << "    status reads that brought nothing new: " << m_repeatedReads << '\n';
    m_repeatedReads = 0;
    for (const QString &difference : found)
        m_out << "  DIFFERENT: " << difference << '\n';
    if (found.isEmpty()) {
        m_out << "  camera and panel agree: " << SimulatedCamera::describeStatus(m_camera.status())
              << '\n';
        if (++m_step < stepCount) {
            beginStep();
            return;
        }
    }
    m_timer.stop();
    // Every step builds on the one before it: after a difference the rest would tell nothing.
    m_out << (found.isEmpty() ? "\nThe tour is done: camera and panel agreed after every step.\n"
                              : "\nThe tour ends here: camera and panel differ.\n")
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
    using Camera = SimulatedCamera;
    const Camera::Status &status = m_camera.status();
    QStringList found;
    const auto expect = [&found](const QString &what, const QString &actual,
                                 const QString &wanted) {
        if (actual != wanted)
            found += QStringLiteral("%1 is %2 instead of %3").arg(what, actual, wanted);
    };

    for (const auto field : Camera::settingFields) {
        const bool free = m_expected.at(field) == anyComposition && status.at(field) != 0;
        expect(Camera::fieldName(field), Camera::valueName(field, status.at(field)),
               Camera::valueName(field, free ? status.at(field) : m_expected.at(field)));
    }

    const auto checkedWord = [](bool checked) {
        return checked ? QStringLiteral("checked") : QStringLiteral("unchecked");
    };
    for (const ValueButton &entry : valueButtons) {
        const QString name = QString::fromLatin1(entry.name);
        const auto *button = m_window.findChild<QAbstractButton *>(name);
        // Without composition its buttons keep the choice for the next time.
        if (entry.field != Camera::Composition || status[Camera::Composition] != 0) {
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
    const bool open = m_step < 0 ? status[Camera::Tracking] != 0 : steps[m_step].open;
    const bool basic = open && status[Camera::Type] == 0;
    expectShown("frame_spliter", open);
    expectShown("frame_picture_title", basic);
    expectShown("frame_picture_mode", basic && status[Camera::Composition] != 0);
    return found;
}
