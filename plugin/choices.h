#pragma once

#include "ui_root.h"

/// A button of a group and the value that it selects.
struct Choice
{
    QPushButton *Ui_root::*button;
    int value;               ///< in the command and in the status block
    bool resetTarget = true; ///< false: a reset to this value does not change the group
};

// The choices of each group. The form starts with the first type and the first mode checked, and
// set-up falls back to them if the camera reports an unknown value.

constexpr Choice typeChoices[] = {
    {&Ui_root::rb_normal, 0},
    {&Ui_root::rb_hand, 1},
    {&Ui_root::rb_whiteboard, 2, false},
};
constexpr Choice modeChoices[] = {
    {&Ui_root::rb_normal_mode, 1},
    {&Ui_root::rb_sport, 2},
};
/// The value 0 turns composition off. It has no button; the composition switch selects it.
constexpr Choice compositionChoices[] = {
    {&Ui_root::wg_half_body, 1},
    {&Ui_root::wg_full_body, 2},
    {&Ui_root::wg_multi_body, 3},
};

/// The choice with this value, or null.
template <int count>
const Choice *choiceOf(int value, const Choice (&choices)[count])
{
    for (const Choice &choice : choices) {
        if (choice.value == value)
            return &choice;
    }
    return nullptr;
}

/// The choice of this button, or null.
template <int count>
const Choice *choiceOf(const QAbstractButton *button, const Ui_root &ui,
                       const Choice (&choices)[count])
{
    for (const Choice &choice : choices) {
        if (ui.*choice.button == button)
            return &choice;
    }
    return nullptr;
}
