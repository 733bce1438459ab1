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
/// The widget then accepts focus by Tab, not by click. Space presses it. Enter presses a press
/// frame if the user has moved the focus by key in this window, as a FocusFrame shows; otherwise
/// Enter is left to the dialog. A hidden or disabled widget cannot be pressed.

/// Presents a switch as a check box called `name` with the action "Toggle".
void makeAccessible(SwitchButton &button, const QString &name);

/// Presents a press frame as a button called `name` with the action "Press".
void makeAccessible(QPressFrame &frame, const QString &name);
