#include "accessibility.h"

#include "qpressframe.h"
#include "switchbutton.h"

#include <QAccessibleWidget>
#include <QCommonStyle>
#include <QFocusFrame>
#include <QMouseEvent>
#include <QPointer>

namespace {

/// Draws a focus frame over all that surrounds its widget, not only as far as the parent reaches.
class FrameStyle : public QCommonStyle
{
    Q_OBJECT

public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override
    {
        return hint == SH_FocusFrame_AboveWidget
                   ? 1
                   : QCommonStyle::styleHint(hint, option, widget, returned);
    }
};

/// Presses a widget, which owns it, for who has no mouse, and frames it while a key has brought the
/// focus there.
class Presser : public QObject
{
    Q_OBJECT

public:
    Presser(QWidget *watched, QAccessible::Role watchedRole)
        : QObject(watched)
        , role(watchedRole)
        , widget(watched)
    {
        widget->setFocusPolicy(Qt::TabFocus);
        widget->installEventFilter(this);
    }

    // The frame is a child of the window, which may live on.
    ~Presser() override { delete frame; }

    void press()
    {
        if (!widget->isVisible() || !widget->isEnabled())
            return;
        QMouseEvent event(QEvent::MouseButtonPress, widget->rect().center(), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        // Straight to the widget: sent through the application it would be a click, which gives the
        // focus to whichever parent takes it so.
        static_cast<QObject *>(widget)->event(&event);
    }

    const QAccessible::Role role;

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress)
            return takeKey(*static_cast<QKeyEvent *>(event));
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
            showFocus(event->type() == QEvent::FocusIn,
                      static_cast<QFocusEvent *>(event)->reason());
        return false;
    }

private:
    bool takeKey(const QKeyEvent &key)
    {
        const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        const bool mine = key.key() == Qt::Key_Space || (enter && role == QAccessible::Button);
        if (!mine || (key.modifiers() & ~Qt::KeypadModifier))
            return false;
        // A key that a switch leaves alone goes on to the row that the switch lies on.
        if (widget->window()->focusWidget() != widget)
            return false;
        if (!key.isAutoRepeat())
            press();
        return true;
    }

    void showFocus(bool focused, Qt::FocusReason reason)
    {
        delete frame;
        // A window or a menu that comes and goes leaves the focus where a key has brought it.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            byKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
        if (!focused || !byKey)
            return;
        frame = new QFocusFrame(widget);
        auto *const style = new FrameStyle;
        style->setParent(frame);
        frame->setStyle(style);
        frame->setWidget(widget);
    }

    QWidget *const widget;
    QPointer<QFocusFrame> frame;
    bool byKey = false;
};

class AccessiblePress : public QAccessibleWidget
{
public:
    AccessiblePress(QWidget *pressed, Presser *itsPresser)
        : QAccessibleWidget(pressed, itsPresser->role)
        , presser(itsPresser)
        , button(qobject_cast<SwitchButton *>(pressed))
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button != nullptr;
        state.checked = button && button->GetStatus();
        return state;
    }

    // A switch's knob is of its look alone.
    int childCount() const override { return button ? 0 : QAccessibleWidget::childCount(); }

    QStringList actionNames() const override
    {
        return QStringList(action()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name == action())
            presser->press();
        else
            QAccessibleWidget::doAction(name);
    }

    QStringList keyBindingsForAction(const QString &name) const override
    {
        return name == action() ? QStringList(QStringLiteral("Space"))
                                : QAccessibleWidget::keyBindingsForAction(name);
    }

private:
    QString action() const { return button ? toggleAction() : pressAction(); }

    Presser *const presser;
    SwitchButton *const button; // null for a press frame
};

QAccessibleInterface *interfaceOf(const QString & /*className*/, QObject *object)
{
    auto *const presser = object->findChild<Presser *>(QString(), Qt::FindDirectChildrenOnly);
    return presser ? new AccessiblePress(static_cast<QWidget *>(object), presser) : nullptr;
}

void make(QWidget &widget, QAccessible::Role role, const QString &name)
{
    new Presser(&widget, role);
    QAccessible::installFactory(interfaceOf); // Qt takes the same one only once
    widget.setAccessibleName(name);
}

} // namespace

void makeAccessible(SwitchButton &button, const QString &name)
{
    make(button, QAccessible::CheckBox, name);
}

void makeAccessible(QPressFrame &frame, const QString &name)
{
    make(frame, QAccessible::Button, name);
}

#include "accessibility.moc"
