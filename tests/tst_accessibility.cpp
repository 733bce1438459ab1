#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QAccessible>
#include <QFocusFrame>

static QAccessibleInterface &interfaceOf(QWidget *widget)
{
    return *QAccessible::queryAccessibleInterface(widget);
}

/// The panel as a screen reader sees it, and its use by keys.
class TestAccessibility : public Test
{
    Q_OBJECT

private:
    QScopedPointer<HostedPanel> hosted;

    void open(const char *status = "0001000101", int language = 1)
    {
        hosted.reset(new HostedPanel);
        hosted->host.status = QByteArray::fromHex(status);
        hosted->host.language = language;
        hosted->insertAndShow();
        VirtualTime::advance(std::chrono::milliseconds(300));
    }

    bool isPressedBy(const char *name, int key, Qt::KeyboardModifiers modifiers = {},
                     bool isRepeated = false)
    {
        open();
        const QString before = hosted->shown();
        auto *const control = hosted->panel->findChild<QWidget *>(name);
        control->setFocus();
        QKeyEvent event(QEvent::KeyPress, key, modifiers, {}, isRepeated);
        QCoreApplication::sendEvent(control, &event);
        return hosted->shown() != before;
    }

private Q_SLOTS:
    void init() { VirtualTime::start(); }
    void cleanup() { hosted.reset(); }

    void namesAndRoles()
    {
        const QHash<int, QString> kinds{{QAccessible::CheckBox, "check "},
                                        {QAccessible::RadioButton, "radio "},
                                        {QAccessible::Button, "button "}};
        open("0001000101", 2);
        QStringList controls;
        const auto widgets = hosted->panel->findChildren<QWidget *>();
        for (QWidget *const widget : widgets) {
            const auto &found = interfaceOf(widget);
            if (widget->isVisible() && kinds.contains(found.role()))
                controls << kinds[found.role()] + found.text(QAccessible::Name) +
                                (found.state().checked ? " *" : "");
        }
        QCOMPARE(controls.join('|'),
                 QString("button AI跟踪|check AI跟踪 *|radio AI跟踪模式: 常规 *|"
                         "radio AI跟踪模式: 手部|radio AI跟踪模式: 白板|"
                         "radio AI跟踪场景: 标准 *|radio AI跟踪场景: 运动|"
                         "check 自动构图 *|check 半身 *|check 全身|check 多人构图"));
    }

    void actions()
    {
        open();
        auto &title = interfaceOf(hosted->ui().frame_title);
        auto &composition = interfaceOf(hosted->ui().sw_picture_mode);
        QCOMPARE(title.actionInterface()->actionNames(), QStringList({"Press", "SetFocus"}));
        QCOMPARE(composition.actionInterface()->actionNames(), QStringList({"Toggle", "SetFocus"}));
        composition.actionInterface()->doAction("Toggle");
        QVERIFY(!composition.state().checked && composition.state().checkable);
        title.actionInterface()->doAction("Press");
        QVERIFY(hosted->ui().frame_spliter->isHidden() && !title.state().checkable);
        VirtualTime::advance(std::chrono::milliseconds(300));
        composition.actionInterface()->doAction("Toggle"); // hidden by now
        QVERIFY(!composition.state().checked);
    }

    void keys()
    {
        QVERIFY(isPressedBy("sw_title", Qt::Key_Space));
        QVERIFY(!isPressedBy("sw_title", Qt::Key_Space, {}, true));
        QVERIFY(!isPressedBy("sw_title", Qt::Key_Return));
        QVERIFY(isPressedBy("frame_title", Qt::Key_Return));
        QVERIFY(isPressedBy("frame_title", Qt::Key_Enter, Qt::KeypadModifier));
        QVERIFY(!isPressedBy("frame_title", Qt::Key_Space, Qt::ControlModifier));
        QVERIFY(!isPressedBy("frame_title", Qt::Key_A));
    }

    // Tab reaches all visible rows. A star is a focus frame, for widgets that draw no focus of
    // their own; the first has none, since it did not get the focus by key.
    void tabOrder()
    {
        open("0001000100");
        QApplication::setActiveWindow(&hosted->window);
        const auto frames = [this] {
            return hosted->window.findChildren<QFocusFrame *>().size();
        };
        QString order;
        for (int i = 0; i < 6; ++i) {
            QWidget *const focused = QApplication::focusWidget();
            QVERIFY(focused);
            order += focused->objectName() + (frames() == 0 ? " " : "* ");
            QTest::keyClick(focused, Qt::Key_Tab);
        }
        QCOMPARE(order,
                 "frame_title sw_title* rb_normal rb_normal_mode sw_picture_mode* frame_title* ");
        QCOMPARE(QApplication::focusWidget(), hosted->ui().sw_title);
        QTest::mouseClick(hosted->ui().frame_title, Qt::LeftButton);
        QCOMPARE(QApplication::focusWidget(), hosted->ui().sw_title);
        delete hosted->panel;
        QCOMPARE(frames(), 0);
    }
};

TEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
