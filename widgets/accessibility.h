#pragma once

class QPressFrame;
class QString;
class SwitchButton;

/// \file
/// Access to switches and press frames by keyboard and assistive technology.
///
/// Call makeAccessible() once per widget, before its accessible interface is created or its
/// accessible name is set: Qt keeps the first interface.
///
/// The widget then accepts focus by Tab. Space presses it; Enter presses a press frame, too. A
/// hidden or disabled widget cannot be pressed. A focus frame is visible if the focus came by Tab.
/// A click does not give the widget focus. But if a click hides the focused control, Qt moves the
/// focus on as Tab does, and the focus frame appears around the widget that receives it.

/// Presents a switch as a check box called `name` with the action "Toggle".
void makeAccessible(SwitchButton &button, const QString &name);

/// Presents a press frame as a button called `name` with the action "Press".
void makeAccessible(QPressFrame &frame, const QString &name);
