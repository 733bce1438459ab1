#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QAccessible>
#include <QFocusFrame>

/// The panel for people without a mouse, and as a screen reader finds it. What keys do to it in all
/// of its states is left to the model.
class TestAccessibility : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void init() { VirtualTime::start(); }
    void names_data();
    void names();
    void actions();
    void tabOrder();
    void keys_data();
    void keys();
};

namespace {

using namespace std::chrono_literals;
using VirtualTime::advance;

struct OpenPanel : HostedPanel
{
    explicit OpenPanel(int language = 1)
    {
        host.status = QByteArray::fromHex("0001000101");
        host.language = language;
        insertAndShow();
        advance(300ms);
        host.takeSent();
    }
};

/// Roles and names below an interface of what can be operated, in the order of the form.
QStringList operable(QAccessibleInterface *root)
{
    QStringList found;
    QAccessibleActionInterface *const actions = root->actionInterface();
    if (actions && !root->state().invisible) {
        const char *const kind = root->role() == QAccessible::CheckBox      ? "check "
                                 : root->role() == QAccessible::RadioButton ? "radio "
                                 : root->role() == QAccessible::Button      ? "button "
                                                                            : nullptr;
        if (kind)
            found << kind + root->text(QAccessible::Name) + (root->state().checked ? " *" : "");
    }
    for (int i = 0; i < root->childCount(); ++i)
        found << operable(root->child(i));
    return found;
}

} // namespace

void TestAccessibility::names_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("names");
    QTest::newRow("English") << 1
                             << "button AI Tracking|check AI Tracking *|"
                                "radio Tracking Type: Basic *|radio Tracking Type: Hand|"
                                "radio Tracking Type: Board|radio Tracking Mode: Standard *|"
                                "radio Tracking Mode: Sport|check Auto Composition *|"
                                "check Half Body *|check Full Body|check Bodies";
    QTest::newRow("Chinese") << 2
                             << "button AI跟踪|check AI跟踪 *|radio AI跟踪模式: 常规 *|"
                                "radio AI跟踪模式: 手部|radio AI跟踪模式: 白板|"
                                "radio AI跟踪场景: 标准 *|radio AI跟踪场景: 运动|"
                                "check 自动构图 *|check 半身 *|check 全身|check 多人构图";
}

void TestAccessibility::names()
{
    QFETCH(int, language);
    OpenPanel open(language);
    QTEST(operable(QAccessible::queryAccessibleInterface(open.panel)).join('|'), "names");
}

// What a screen reader may do. What it is told needs a platform that has one.
void TestAccessibility::actions()
{
    OpenPanel open;
    const auto interfaceOf = [](QWidget *widget) {
        return QAccessible::queryAccessibleInterface(widget);
    };
    const auto act = [&](QWidget *widget, const char *action) {
        QAccessibleActionInterface *const actions = interfaceOf(widget)->actionInterface();
        QStringList known = actions->actionNames();
        actions->doAction(action);
        return known.contains(action);
    };
    QVERIFY(act(open.ui().sw_picture_mode, "Toggle"));
    QVERIFY(!interfaceOf(open.ui().sw_picture_mode)->state().checked);
    QVERIFY(interfaceOf(open.ui().sw_picture_mode)->state().checkable);
    advance(300ms);
    QCOMPARE(open.host.takeSent().join(' '), "13=0 notice");

    QVERIFY(act(open.ui().frame_title, "Press"));
    QVERIFY(open.ui().frame_spliter->isHidden());
    QVERIFY(!interfaceOf(open.ui().frame_title)->state().checkable);
    act(open.ui().sw_picture_mode, "Toggle"); // out of sight
    open.ui().sw_title->setEnabled(false);
    act(open.ui().sw_title, "Toggle");
    advance(300ms);
    QCOMPARE(open.host.takeSent(), QStringList());
}

void TestAccessibility::tabOrder()
{
    OpenPanel open;
    QApplication::setActiveWindow(&open.window);
    QStringList order;
    for (int i = 0; i < 8; ++i) {
        QWidget *const focused = QApplication::focusWidget();
        QVERIFY(focused);
        const auto frames = open.window.findChildren<QFocusFrame *>();
        order << focused->objectName() + (frames.isEmpty() ? "" : "*");
        if (i == 3) // Auto Composition goes out of sight
            open.ui().rb_hand->click();
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    // Framed is what draws no focus itself and got it by key, so not on the window's activation.
    QCOMPARE(order.join(' '), "frame_title sw_title* rb_normal rb_normal_mode frame_title* "
                              "sw_title* rb_normal rb_normal_mode");
    QCOMPARE(QApplication::focusWidget()->objectName(), "frame_title");
    QCOMPARE(open.window.findChildren<QFocusFrame *>().size(), 1);
    QTest::mouseClick(open.ui().sw_title, Qt::LeftButton);
    QCOMPARE(QApplication::focusWidget()->objectName(), "frame_title"); // not taken by a click
    delete open.panel;
    QVERIFY(open.window.findChildren<QFocusFrame *>().isEmpty());
}

void TestAccessibility::keys_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("repeated");
    QTest::addColumn<bool>("presses");
    const int none = Qt::NoModifier;
    QTest::newRow("Space") << "sw_title" << int(Qt::Key_Space) << none << false << true;
    QTest::newRow("held") << "sw_title" << int(Qt::Key_Space) << none << true << false;
    QTest::newRow("Enter on a switch")
        << "sw_title" << int(Qt::Key_Return) << none << false << false;
    QTest::newRow("Space on the title")
        << "frame_title" << int(Qt::Key_Space) << none << false << true;
    QTest::newRow("Return") << "frame_title" << int(Qt::Key_Return) << none << false << true;
    QTest::newRow("Enter") << "frame_title" << int(Qt::Key_Enter) << int(Qt::KeypadModifier)
                           << false << true;
    QTest::newRow("a shortcut") << "frame_title" << int(Qt::Key_Space) << int(Qt::ControlModifier)
                                << false << false;
    QTest::newRow("a letter") << "frame_title" << int(Qt::Key_A) << none << false << false;
}

void TestAccessibility::keys()
{
    QFETCH(QString, control);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, repeated);
    OpenPanel open;
    const QString before = open.shown();
    QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers), {}, repeated);
    auto *const widget = open.panel->findChild<QWidget *>(control);
    widget->setFocus();
    QCoreApplication::sendEvent(widget, &event);
    QTEST(open.shown() != before, "presses");
}

TEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
