#pragma once

class QPressFrame;
class QString;
class SwitchButton;

/// \file
/// For people without a mouse, and for assistive technology. Nothing changes for who uses a mouse:
/// no click takes the focus.
///
/// The functions let a widget take the focus by Tab; Space then does what a press does, and on a
/// press frame Enter too. While a key has brought the focus there a frame shows it. Assistive
/// technology finds a check box with the action "Toggle" or a button with the action "Press", under
/// `name`. A widget that is hidden or disabled takes no such press. To be called once for a widget,
/// before anything else asks for its QAccessibleInterface or gives it an accessible name: Qt keeps
/// the interface that it finds first.

/// A check box under `name`, with the action "Toggle".
void makeAccessible(SwitchButton &button, const QString &name);

/// A button under `name`, with the action "Press".
void makeAccessible(QPressFrame &frame, const QString &name);
