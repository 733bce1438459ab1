#include "accessibility.h"

#include "qpressframe.h"
#include "switchbutton.h"

#include <QAccessibleWidget>
#include <QCommonStyle>
#include <QFocusFrame>
#include <QMouseEvent>
#include <QPointer>

namespace {

/// Draws focus frames above all other widgets, so that the parent does not clip them.
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

/// Presses its widget from the keyboard or assistive technology, and draws a focus frame around it
/// if the focus came by Tab. Owned by the widget.
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

    // The frame is a child of the window, which may outlive the widget.
    ~Presser() override { delete frame; }

    void press()
    {
        if (!widget->isVisible() || !widget->isEnabled())
            return;
        QMouseEvent event(QEvent::MouseButtonPress, widget->rect().center(), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        // Bypass QApplication: it would treat the event as a click and give the focus to a parent
        // that accepts it by click.
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
        // A key that a switch ignores propagates to the press frame behind it. Ignore it there.
        if (widget->window()->focusWidget() != widget)
            return false;
        if (!key.isAutoRepeat())
            press();
        return true;
    }

    void showFocus(bool focused, Qt::FocusReason reason)
    {
        delete frame;
        // Switching windows or opening a menu does not change how the focus got here.
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

    // The knob is decoration.
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
    QAccessible::installFactory(interfaceOf); // Qt ignores a repeated call
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
