#include "controltrackingplugin.h"

#include "choices.h"

namespace {

constexpr int setControl = 7;
constexpr int getControl = 8;

enum CommandId : quint8 {
    TrackingSwitch = 0x04,
    TrackingMode = 0x07,
    TrackingType = 0x10,
    Composition = 0x13,
};

template <int payloadSize>
QSharedPointer<M24_Extension> describe(CommandId command, int defaultValue,
                                       quint8 (&payload)[payloadSize])
{
    const M24_Extension setting{
        setControl, getControl, defaultValue, payloadSize, {0xFF, 0x53, 0x05, command}, 1, payload};
    return QSharedPointer<M24_Extension>::create(setting);
}

// SetStatus() on a sliding switch would only undo blockNextSignal(). If a status read started the
// slide, its end would then send a command.
void moveTo(SwitchButton *button, bool on)
{
    if (!button->isSliding() && button->GetStatus() != on)
        button->SetStatus(on, false);
}

} // namespace

ControlTrackingPlugin::ControlTrackingPlugin(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui_root)
    , trackingSwitch(describe(TrackingSwitch, 1, payloadBuffer))
    , trackingType(describe(TrackingType, 0, payloadBuffer))
    , trackingMode(describe(TrackingMode, 1, payloadBuffer))
    , composition(describe(Composition, 0, payloadBuffer))
{
    pollTimer.reset(new QTimer);
}

ControlTrackingPlugin::~ControlTrackingPlugin()
{
    // First, so that no poll runs on a half-destroyed panel.
    pollTimer.reset();
    delete ui;
}

int ControlTrackingPlugin::category()
{
    return 0;
}

QString ControlTrackingPlugin::name()
{
    return QStringLiteral("m24_tracking");
}

void ControlTrackingPlugin::resetToDefault()
{
    if (!layout())
        return;

    moveTo(ui->sw_title, trackingSwitch->defaultValue != 0);

    const auto choose = [this](const Choice *choice) {
        if (choice && choice->resetTarget)
            (ui->*choice->button)->click();
    };
    choose(choiceOf(trackingType->defaultValue, typeChoices));
    choose(choiceOf(trackingMode->defaultValue, modeChoices));
    moveTo(ui->sw_picture_mode, composition->defaultValue != 0);
    choose(choiceOf(composition->defaultValue, compositionChoices));
}
