#pragma once

#include "ui_root.h"

/// A button of a group, and what it stands for.
struct Choice
{
    QPushButton *Ui_root::*button;
    int value;               ///< in the setting's command and in the status block
    bool resetTarget = true; ///< whether a reset chooses it when it is the factory value
};

// What each button of a group means. The first type and the first mode are checked in the form;
// set-up takes a value that no button stands for as that first one.

constexpr Choice typeChoices[] = {
    {&Ui_root::rb_normal, 0},
    {&Ui_root::rb_hand, 1},
    {&Ui_root::rb_whiteboard, 2, false},
};
constexpr Choice modeChoices[] = {
    {&Ui_root::rb_normal_mode, 1},
    {&Ui_root::rb_sport, 2},
};
/// Composition off is 0, and a switch of its own.
constexpr Choice compositionChoices[] = {
    {&Ui_root::wg_half_body, 1},
    {&Ui_root::wg_full_body, 2},
    {&Ui_root::wg_multi_body, 3},
};

/// The choice with this value; null if there is none.
template <int count>
const Choice *choiceOf(int value, const Choice (&choices)[count])
{
    for (const Choice &choice : choices) {
        if (choice.value == value)
            return &choice;
    }
    return nullptr;
}

/// The choice that this button stands for; null if there is none.
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
