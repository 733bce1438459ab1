// What the user does to the controls: first the rows follow, then the camera is told.

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

// The group reports the button that loses its check and then the one that gains it. Both count: the
// camera is sent the old value and then the new one.
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

// A button that somebody else has put into the group stands for nothing.
void ControlTrackingPlugin::sendChoice(M24_Extension &setting, const Choice *choice)
{
    if (choice)
        sendCommand(setting, choice->value);
}

void ControlTrackingPlugin::sendCameraNotice()
{
    sendCameraData(CameraData{ui->rb_hand, true, 3, 0, 2});
}

// Composition is for the type Basic alone, its pictures for composition that is on.
void ControlTrackingPlugin::showCompositionRows(bool basic)
{
    updateSpliterSub(host(), ui->frame_picture_title, basic, false);
    updateSpliterSub(host(), ui->frame_picture_mode, basic && ui->sw_picture_mode->GetStatus(),
                     true);
}
