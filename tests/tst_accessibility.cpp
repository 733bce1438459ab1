#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QAccessible>
#include <QFocusFrame>
#include <QKeySequence>

namespace {

using namespace std::chrono_literals;
using VirtualTime::advance;

struct OpenPanel : HostedPanel
{
    explicit OpenPanel(int language = 1)
    {
        host.language = language;
        host.status = QByteArray::fromHex("0001000101");
        insertAndShow();
        advance(300ms);
        host.takeSent();
    }
};

QAccessibleInterface *interfaceOf(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget);
}

/// Roles and names below an interface of what can be operated, in the order of the form.
QStringList operable(QAccessibleInterface *root)
{
    static const QHash<int, QString> kinds{{QAccessible::CheckBox, "check "},
                                           {QAccessible::RadioButton, "radio "},
                                           {QAccessible::Button, "button "}};
    QStringList found;
    if (root->actionInterface() && !root->state().invisible && kinds.contains(root->role()))
        found << kinds[root->role()] + root->text(QAccessible::Name) +
                     (root->state().checked ? " *" : "");
    for (int i = 0; i < root->childCount(); ++i)
        found << operable(root->child(i));
    return found;
}

} // namespace

/// The panel for people without a mouse, and as a screen reader finds it. What keys do to it in all
/// of its states is left to the model.
class TestAccessibility : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void init() { VirtualTime::start(); }

    void names()
    {
        OpenPanel open(2);
        QCOMPARE(operable(interfaceOf(open.panel)).join('|'),
                 QString("button AI跟踪|check AI跟踪 *|radio AI跟踪模式: 常规 *|"
                         "radio AI跟踪模式: 手部|radio AI跟踪模式: 白板|"
                         "radio AI跟踪场景: 标准 *|radio AI跟踪场景: 运动|"
                         "check 自动构图 *|check 半身 *|check 全身|check 多人构图"));
    }

    // What a screen reader may do. What it is told needs a platform that has one.
    void actions()
    {
        OpenPanel open;
        QAccessibleInterface *const title = interfaceOf(open.ui().frame_title);
        QAccessibleInterface *const composed = interfaceOf(open.ui().sw_picture_mode);
        QAccessibleActionInterface &toggle = *composed->actionInterface();
        QCOMPARE(title->actionInterface()->actionNames(), QStringList({"Press", "SetFocus"}));
        QCOMPARE(toggle.actionNames(), QStringList({"Toggle", "SetFocus"}));
        QCOMPARE(toggle.keyBindingsForAction("Toggle"), QStringList("Space"));
        toggle.doAction("SetFocus");
        QVERIFY(open.ui().sw_picture_mode->hasFocus());
        toggle.doAction("Toggle");
        QVERIFY(!composed->state().checked && composed->state().checkable);
        advance(300ms);
        QCOMPARE(open.host.takeSent().join(' '), "13=0 notice");

        title->actionInterface()->doAction("Press");
        QVERIFY(open.ui().frame_spliter->isHidden() && !title->state().checkable);
        toggle.doAction("Toggle"); // out of sight
        open.ui().sw_title->setEnabled(false);
        interfaceOf(open.ui().sw_title)->actionInterface()->doAction("Toggle");
        advance(300ms);
        QCOMPARE(open.host.takeSent(), QStringList());
    }

    void tabOrder()
    {
        OpenPanel open;
        QApplication::setActiveWindow(&open.window);
        const auto frames = [&open] {
            return open.window.findChildren<QFocusFrame *>().size();
        };
        QStringList order;
        for (int i = 0; i < 8; ++i) {
            QWidget *const focused = QApplication::focusWidget();
            QVERIFY(focused);
            order << focused->objectName() + (frames() == 0 ? "" : "*");
            if (i == 3) // Auto Composition goes out of sight
                open.ui().rb_hand->click();
            QTest::keyClick(focused, Qt::Key_Tab);
        }
        // Framed is what draws no focus itself and got it by key, so not on the window's
        // activation.
        QCOMPARE(order.join(' '), "frame_title sw_title* rb_normal rb_normal_mode frame_title* "
                                  "sw_title* rb_normal rb_normal_mode");
        QCOMPARE(QApplication::focusWidget()->objectName(), "frame_title");
        QCOMPARE(frames(), 1);
        QTest::mouseClick(open.ui().sw_title, Qt::LeftButton);
        QCOMPARE(QApplication::focusWidget()->objectName(), "frame_title"); // not taken by a click
        delete open.panel;
        QCOMPARE(frames(), 0);
    }

    // Of a control and a key: those that press it.
    void keys()
    {
        QStringList presses;
        for (const char *pair :
             {"sw_title Space", "sw_title held Space", "sw_title Return", "frame_title Return",
              "frame_title Num+Enter", "frame_title Ctrl+Space", "frame_title A"}) {
            const QStringList words = QString(pair).split(' ');
            const auto keys = int(QKeySequence(words.last())[0]);
            QKeyEvent event(QEvent::KeyPress, int(keys & ~Qt::KeyboardModifierMask),
                            Qt::KeyboardModifiers(keys & Qt::KeyboardModifierMask), {},
                            words.contains("held"));
            OpenPanel open;
            const QString before = open.shown();
            auto *const control = open.panel->findChild<QWidget *>(words.first());
            control->setFocus();
            QCoreApplication::sendEvent(control, &event);
            if (open.shown() != before)
                presses << pair;
        }
        QCOMPARE(presses.join(", "), "sw_title Space, frame_title Return, frame_title Num+Enter");
    }
};

TEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
