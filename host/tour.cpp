#include "tour.h"

#include "commandchannel.h"
#include "mousepress.h"
#include "simulatedcamera.h"
#include "transfertext.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <iterator>

using namespace TrackingProtocol;

namespace {

using namespace std::chrono_literals;

constexpr auto checkInterval = 50ms;
/// A step ends after this many checks in a row without a difference. They take 250 ms, which covers
/// the slide of a switch (100 ms), during which it ignores presses, and the title row's pause after
/// a press (200 ms). Counts instead of measuring time, because slides end only while the event loop
/// runs.
constexpr int checksToAgree = 5;
/// Limit for a step with a fast camera. The first poll comes about four seconds after set-up.
constexpr auto longestStep = 6s;
/// A step may wait for this many transfers: a read in flight, the old and the new value of two
/// settings, and two more reads.
constexpr int transfersPerStep = 7;
/// Limit for the first transfer.
constexpr auto longestTransfer = 10s;

/// Any composition except "off": the panel remembers the last choice.
constexpr quint8 any = 0xFF;

struct Step
{
    const char *text;
    const char *control; ///< to press; null: change the camera's state to `camera` instead
    Status camera;       ///< the camera's state after the step; Reserved is ignored
    const char *checked; ///< the panel's visible checked buttons after the step; may end in *
};

constexpr Step steps[] = {
    {"Host: reset to defaults", "pb_reset", {0, 1, 0, 1, 0}, "rb_normal rb_normal_mode"},
    {"User: title row, to collapse the panel", "frame_title", {0, 1, 0, 1, 0}, ""},
    {"User: title row, to expand it", "frame_title", {0, 1, 0, 1, 0}, "rb_normal rb_normal_mode"},
    {"User: type Hand", "rb_hand", {0, 1, 1, 1, 0}, "rb_hand rb_normal_mode"},
    {"User: type Board", "rb_whiteboard", {0, 1, 2, 1, 0}, "rb_whiteboard rb_normal_mode"},
    {"User: type Basic", "rb_normal", {0, 1, 0, 1, 0}, "rb_normal rb_normal_mode"},
    {"User: mode Sport", "rb_sport", {0, 1, 0, 2, 0}, "rb_normal rb_sport"},
    {"User: mode Standard", "rb_normal_mode", {0, 1, 0, 1, 0}, "rb_normal rb_normal_mode"},
    {"User: composition on", "sw_picture_mode", {0, 1, 0, 1, any}, "rb_normal rb_normal_mode wg_*"},
    {"User: Full Body", "wg_full_body", {0, 1, 0, 1, 2}, "rb_normal rb_normal_mode wg_full_body"},
    {"User: Bodies", "wg_multi_body", {0, 1, 0, 1, 3}, "rb_normal rb_normal_mode wg_multi_body"},
    {"User: Half Body", "wg_half_body", {0, 1, 0, 1, 1}, "rb_normal rb_normal_mode wg_half_body"},
    {"User: tracking off", "sw_title", {0, 0, 0, 1, 1}, ""},
    {"User: title row, which stays collapsed", "frame_title", {0, 0, 0, 1, 1}, ""},
    {"User: tracking on", "sw_title", {0, 1, 0, 1, 1}, "rb_normal rb_normal_mode wg_half_body"},
    {"Camera: tracking off", nullptr, {0, 0, 0, 1, 1}, ""},
    {"Camera: tracking on, type Hand", nullptr, {0, 1, 1, 1, 1}, "rb_hand rb_normal_mode"},
    {"Host: reset to defaults", "pb_reset", {0, 1, 0, 1, 0}, "rb_normal rb_normal_mode"},
};
constexpr int stepCount = static_cast<int>(std::size(steps));

QString inWords(const Status &status)
{
    const QByteArray bytes(reinterpret_cast<const char *>(status.data()), FieldCount);
    return describeStatus(bytes.leftJustified(blockLength, '\0'));
}

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
    if (transfer.isStatusRead() && transfer.bytes.size() >= FieldCount) {
        m_camera.emplace();
        std::copy_n(transfer.bytes.cbegin(), FieldCount, m_camera->begin());
    } else if (transfer.selector == commandSelector && transfer.outcome == Transfer::Succeeded &&
               m_camera) {
        m_camera->at(fieldOf(transfer.bytes)) = quint8(transfer.bytes[valueOffset]);
    }

    QString line = exchangeText(transfer).leftJustified(16) +
                   firstBytes(transfer).leftJustified(19) + transfer.meaning;
    if (transfer.outcome != Transfer::Succeeded)
        line += ": " + resultText(transfer);
    if (transfer.isStatusRead()) {
        if (line == m_lastRead)
            return;
        m_lastRead = line;
    }
    m_out << "    " << line << '\n' << flush;
}

void Tour::beginNextStep()
{
    do
        ++m_step;
    while (m_step < stepCount && !steps[m_step].control && !m_simulated);
    if (m_step == stepCount) {
        finish(true);
        return;
    }
    const Step &step = steps[m_step];
    m_out << '\n' << m_step + 1 << ". " << step.text << '\n' << flush;
    // At the end, a status read must confirm what the commands have set.
    if (m_step == stepCount - 1)
        m_camera.reset();
    if (!step.control)
        m_simulated->setStatus(step.camera);
    else if (!press(step.control))
        m_out << "    " << step.control << " cannot be pressed\n" << flush;
    m_sinceStep.start();
    m_agreed = 0;
}

void Tour::checkStep()
{
    // While the window is frozen, its layout is not final.
    if (!m_window.updatesEnabled())
        return;
    const QString found = difference();
    m_agreed = found.isEmpty() ? m_agreed + 1 : 0;
    const auto patience = m_slowest < 0 ? longestTransfer : transfersPerStep * m_slowest * 1ms;
    if (m_agreed < checksToAgree && m_sinceStep.elapsed() * 1ms < longestStep + patience)
        return;
    if (!found.isEmpty()) {
        m_out << "  DIFFERENT: " << found << '\n';
        finish(false);
        return;
    }
    if (m_step >= 0)
        m_out << "  camera and panel agree: " << inWords(*m_camera) << '\n';
    beginNextStep();
}

// The first difference ends the tour, because each step builds on the one before it.
void Tour::finish(bool agreed)
{
    m_timer.stop();
    m_out << (agreed ? "\nThe tour is complete: camera and panel agreed after every step.\n"
                     : "\nThe tour stops here: camera and panel differ.\n")
          << "longest stall of the window: " << m_stalls.longest() / 1ms << " ms\n"
          << flush;
    Q_EMIT finished(agreed);
}

bool Tour::press(const QString &name)
{
    auto *const control = m_window.findChild<QWidget *>(name);
    if (!control || !control->isVisible() || !control->isEnabled())
        return false;
    pressMouse(*control, control->rect().center());
    return true;
}

// Says what differs from the step's expectation; empty if nothing does.
QString Tour::difference() const
{
    if (!m_camera)
        return "the camera has reported nothing";
    if (m_step < 0)
        return {};
    const Step &step = steps[m_step];
    Status expected = step.camera;
    if (expected[Composition] == any)
        expected[Composition] = std::max<quint8>(1, m_camera->at(Composition));
    if (inWords(*m_camera) != inWords(expected))
        return QString("the camera has %1 instead of %2")
            .arg(inWords(*m_camera), inWords(expected));

    QStringList checked;
    static const QRegularExpression panelButtons("^(rb|wg)_");
    const auto buttons = m_window.findChildren<QAbstractButton *>(panelButtons);
    for (const QAbstractButton *const button : buttons) {
        if (button->isVisible() && button->isChecked())
            checked += button->objectName();
    }
    const QRegularExpression wanted(QRegularExpression::wildcardToRegularExpression(step.checked));
    if (!wanted.match(checked.join(' ')).hasMatch())
        return QString(R"(the panel shows "%1" instead of "%2")")
            .arg(checked.join(' '), step.checked);
    return {};
}
