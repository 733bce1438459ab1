#pragma once

#include <QFocusFrame>

/// A frame around the control that has the keyboard focus, visible on light and dark backgrounds.
///
/// It follows the focus within one area. It is hidden while the focus is elsewhere, and if the user
/// has not moved the focus by key in this window (Qt::WA_KeyboardFocusChange).
class FocusFrame final : public QFocusFrame
{
    Q_OBJECT
public:
    /// Deleted with `area`.
    explicit FocusFrame(QWidget &area);

private:
    void follow(QWidget *focused);

    QWidget &m_area;
};
