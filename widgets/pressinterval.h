#pragma once

#include <QDateTime>
#include <QMouseEvent>

#include <utility>

/// Returns whether a press is a click: with the left button, at least 200 ms after `last`, the time
/// of the left button's previous press in ms since the epoch. Updates `last`.
inline bool isClick(const QMouseEvent &press, qint64 &last)
{
    constexpr qint64 interval = 200;
    if (press.button() != Qt::LeftButton)
        return false;
    const qint64 previous = std::exchange(last, QDateTime::currentMSecsSinceEpoch());
    return last - previous >= interval;
}
