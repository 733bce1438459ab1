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
        const auto act = [](QWidget *widget, const char *action) {
            QAccessibleActionInterface *const actions = interfaceOf(widget)->actionInterface();
            actions->doAction(action);
            return actions->actionNames().contains(action);
        };
        QWidget *const composed = open.ui().sw_picture_mode;
        QVERIFY(act(composed, "Toggle"));
        QVERIFY(!interfaceOf(composed)->state().checked);
        QVERIFY(interfaceOf(composed)->state().checkable);
        advance(300ms);
        QCOMPARE(open.host.takeSent().join(' '), "13=0 notice");

        QVERIFY(act(open.ui().frame_title, "Press"));
        QVERIFY(open.ui().frame_spliter->isHidden());
        QVERIFY(!interfaceOf(open.ui().frame_title)->state().checkable);
        act(composed, "Toggle"); // out of sight
        open.ui().sw_title->setEnabled(false);
        act(open.ui().sw_title, "Toggle");
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

    // A control, a key, and whether that presses it.
    void keys_data()
    {
        QTest::addColumn<bool>("presses");
        QTest::newRow("sw_title Space") << true;
        QTest::newRow("sw_title held Space") << false;
        QTest::newRow("sw_title Return") << false;
        QTest::newRow("frame_title Return") << true;
        QTest::newRow("frame_title Num+Enter") << true;
        QTest::newRow("frame_title Ctrl+Space") << false;
        QTest::newRow("frame_title A") << false;
    }

    void keys()
    {
        const QStringList words = QString(QTest::currentDataTag()).split(' ');
        const auto keys = int(QKeySequence(words.last())[0]);
        QKeyEvent event(QEvent::KeyPress, int(keys & ~Qt::KeyboardModifierMask),
                        Qt::KeyboardModifiers(keys & Qt::KeyboardModifierMask), {},
                        words.contains("held"));
        OpenPanel open;
        const QString before = open.shown();
        auto *const control = open.panel->findChild<QWidget *>(words.first());
        control->setFocus();
        QCoreApplication::sendEvent(control, &event);
        QTEST(open.shown() != before, "presses");
    }
};

TEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
