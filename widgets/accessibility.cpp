#include "accessibility.h"

#include "qpressframe.h"
#include "switchbutton.h"

#include <QAccessibleWidget>
#include <QMouseEvent>

namespace {

/// Presses its widget from the keyboard or assistive technology. Owned by the widget.
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
        return event->type() == QEvent::KeyPress && takeKey(*static_cast<QKeyEvent *>(event));
    }

private:
    bool takeKey(const QKeyEvent &key)
    {
        // If the user has not moved the focus here by key, Enter is meant for the dialog.
        const bool enter = (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
                           role == QAccessible::Button &&
                           widget->window()->testAttribute(Qt::WA_KeyboardFocusChange);
        const bool mine = key.key() == Qt::Key_Space || enter;
        if (!mine || (key.modifiers() & ~Qt::KeypadModifier))
            return false;
        // A key that a switch ignores propagates to the press frame behind it. Ignore it there.
        if (widget->window()->focusWidget() != widget)
            return false;
        if (!key.isAutoRepeat())
            press();
        return true;
    }

    QWidget *const widget;
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
