#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QAccessible>
#include <QFocusFrame>

static QAccessibleInterface &interfaceOf(QWidget *widget)
{
    return *QAccessible::queryAccessibleInterface(widget);
}

/// The panel as a screen reader sees it, and its order of focus.
class TestAccessibility : public Test
{
    Q_OBJECT

private:
    QScopedPointer<HostedPanel> hosted;

    void open(const char *status = "0001000101")
    {
        hosted.reset(new HostedPanel);
        hosted->host.status = QByteArray::fromHex(status);
        hosted->insertAndShow();
        VirtualTime::advance(std::chrono::milliseconds(300));
    }

private Q_SLOTS:
    void init() { VirtualTime::start(); }
    void cleanup() { hosted.reset(); }

    void namesAndRoles()
    {
        const QHash<int, QString> kinds{{QAccessible::CheckBox, "check "},
                                        {QAccessible::RadioButton, "radio "},
                                        {QAccessible::Button, "button "}};
        open();
        QStringList controls;
        const auto widgets = hosted->panel->findChildren<QWidget *>();
        for (QWidget *const widget : widgets) {
            const auto &found = interfaceOf(widget);
            if (widget->isVisible() && kinds.contains(found.role()))
                controls << kinds[found.role()] + found.text(QAccessible::Name) +
                                (found.state().checked ? " *" : "");
        }
        QCOMPARE(
            controls.join('|'),
            QString("button AI Tracking|check AI Tracking *|radio Tracking Type: Basic *|"
                    "radio Tracking Type: Hand|radio Tracking Type: Board|"
                    "radio Tracking Mode: Standard *|radio Tracking Mode: Sport|"
                    "check Auto Composition *|check Half Body *|check Full Body|check Bodies"));
    }

    void actions()
    {
        open();
        auto &title = interfaceOf(hosted->ui().frame_title);
        auto &composition = interfaceOf(hosted->ui().sw_picture_mode);
        QCOMPARE(title.actionInterface()->actionNames(), QStringList({"Press", "SetFocus"}));
        QCOMPARE(composition.actionInterface()->actionNames(), QStringList({"Toggle", "SetFocus"}));
        QCOMPARE(composition.actionInterface()->keyBindingsForAction("Toggle"),
                 QStringList("Space"));
        composition.actionInterface()->doAction("Toggle");
        QVERIFY(!composition.state().checked && composition.state().checkable);
        QCOMPARE(composition.childCount(), 0);
        title.actionInterface()->doAction("Press");
        QVERIFY(hosted->ui().frame_spliter->isHidden() && !title.state().checkable);
        VirtualTime::advance(std::chrono::milliseconds(300));
        composition.actionInterface()->doAction("Toggle"); // hidden by now
        QVERIFY(!composition.state().checked);
        hosted->ui().frame_title->setFocus();
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, {}, {}, true);
        QCoreApplication::sendEvent(hosted->ui().frame_title, &repeated);
        QVERIFY(hosted->ui().frame_spliter->isHidden());
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
