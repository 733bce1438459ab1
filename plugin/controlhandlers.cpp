// What the user does to the controls: first the rows follow, then the camera is told.

#include "controltrackingplugin.h"
#include "ui_root.h"

void ControlTrackingPlugin::onTitleClicked()
{
    if (!ui->sw_title->GetStatus())
        return;
    const bool show = !ui->frame_spliter->isVisible();
    const bool basic = show && ui->rb_normal->isChecked();
    updateSpliter(host(), ui->frame_spliter, show);
    updateSpliterSub(host(), ui->frame_picture_title, basic, false);
    updateSpliterSub(host(), ui->frame_picture_mode, basic && ui->sw_picture_mode->GetStatus(),
                     true);
}

void ControlTrackingPlugin::onTrackingSwitch(int value)
{
    const bool on = value != 0;
    const bool basic = on && ui->rb_normal->isChecked();
    updateSpliter(host(), ui->frame_spliter, on);
    updateSpliterSub(host(), ui->frame_picture_title, basic, false);
    updateSpliterSub(host(), ui->frame_picture_mode, basic && ui->sw_picture_mode->GetStatus(),
                     true);
    sendCommand(*trackingSwitch, value);
    if (!on)
        sendCameraNotice();
}

// The group reports the button that loses its check and then the one that gains it. Both count: the
// camera is sent the old value and then the new one.
void ControlTrackingPlugin::onTrackingType(QAbstractButton *button, bool /*checked*/)
{
    const bool basic = button == ui->rb_normal;
    updateSpliterSub(host(), ui->frame_picture_title, basic, false);
    updateSpliterSub(host(), ui->frame_picture_mode, basic && ui->sw_picture_mode->GetStatus(),
                     true);
    if (button == ui->rb_normal)
        sendCommand(*trackingType, 0);
    else if (button == ui->rb_hand)
        sendCommand(*trackingType, 1);
    else if (button == ui->rb_whiteboard)
        sendCommand(*trackingType, 2);
    sendCameraNotice();
}

void ControlTrackingPlugin::onTrackingMode(QAbstractButton *button, bool /*checked*/)
{
    if (button == ui->rb_normal_mode)
        sendCommand(*trackingMode, 1);
    else if (button == ui->rb_sport)
        sendCommand(*trackingMode, 2);
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
    if (button == ui->wg_half_body)
        sendCommand(*composition, 1);
    else if (button == ui->wg_full_body)
        sendCommand(*composition, 2);
    else if (button == ui->wg_multi_body)
        sendCommand(*composition, 3);
}

void ControlTrackingPlugin::sendCameraNotice()
{
    sendCameraData(CameraData{ui->rb_hand, true, 3, 0, 2});
}
