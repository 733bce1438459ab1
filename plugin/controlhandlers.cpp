// Handlers of the controls. Each updates the rows first and then sends its command.

#include "choices.h"
#include "controltrackingplugin.h"

void ControlTrackingPlugin::onTitleClicked()
{
    if (!ui->sw_title->GetStatus())
        return;
    const bool show = !ui->frame_spliter->isVisible();
    updateSpliter(host(), ui->frame_spliter, show);
    showCompositionRows(show && ui->rb_normal->isChecked());
}

void ControlTrackingPlugin::onTrackingSwitch(int value)
{
    const bool on = value != 0;
    updateSpliter(host(), ui->frame_spliter, on);
    showCompositionRows(on && ui->rb_normal->isChecked());
    sendCommand(*trackingSwitch, value);
    if (!on)
        sendCameraNotice();
}

// The group reports the button that loses its check, then the one that gains it. This handler and
// the two others for button groups send both, so the camera gets the old value first.
void ControlTrackingPlugin::onTrackingType(QAbstractButton *button, bool /*checked*/)
{
    showCompositionRows(button == ui->rb_normal);
    sendChoice(*trackingType, choiceOf(button, *ui, typeChoices));
    sendCameraNotice();
}

void ControlTrackingPlugin::onTrackingMode(QAbstractButton *button, bool /*checked*/)
{
    sendChoice(*trackingMode, choiceOf(button, *ui, modeChoices));
}

void ControlTrackingPlugin::onPictureModeSwitch(int value)
{
    updateSpliterSub(host(), ui->frame_picture_mode, value != 0, true);
    if (value == 0) {
        sendCommand(*composition, 0);
        sendCameraNotice();
        return;
    }
    if (!ui->buttonGroup_picture_mdoe->checkedButton())
        ui->wg_half_body->setChecked(true);
    setPictureModeUI(ui->buttonGroup_picture_mdoe->checkedButton(), false);
}

void ControlTrackingPlugin::setPictureModeUI(QAbstractButton *button, bool /*checked*/)
{
    sendChoice(*composition, choiceOf(button, *ui, compositionChoices));
}

// Ignores buttons that others added to the group: they have no choice.
void ControlTrackingPlugin::sendChoice(M24_Extension &setting, const Choice *choice)
{
    if (choice)
        sendCommand(setting, choice->value);
}

void ControlTrackingPlugin::sendCameraNotice()
{
    sendCameraData(CameraData{ui->rb_hand, true, 3, 0, 2});
}

// Composition exists for the type Basic only. Its pictures show while it is on.
void ControlTrackingPlugin::showCompositionRows(bool basic)
{
    updateSpliterSub(host(), ui->frame_picture_title, basic, false);
    updateSpliterSub(host(), ui->frame_picture_mode, basic && ui->sw_picture_mode->GetStatus(),
                     true);
}
