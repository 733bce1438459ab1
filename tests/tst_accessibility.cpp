#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QAccessible>
#include <QDialog>
#include <QDialogButtonBox>
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

    // Tab reaches all visible rows, and the checked button of each group. A star is the focus
    // frame: it follows a key, not a click.
    void keyboardFocus()
    {
        open("0001000100");
        QApplication::setActiveWindow(&hosted->window);
        const auto focused = [this] {
            QWidget *const widget = QApplication::focusWidget();
            const auto *const frame = hosted->window.findChild<QFocusFrame *>();
            const bool framed = frame && frame->isVisible() && frame->widget() == widget;
            return (widget ? widget->objectName() : "nothing") + (framed ? "* " : " ");
        };
        const auto tabs = [&] {
            QString order;
            for (int i = 0; i < 4; ++i) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                order += focused();
            }
            return order;
        };
        QCOMPARE(focused(), "frame_title ");
        QTest::mouseClick(hosted->ui().rb_hand, Qt::LeftButton);
        QTest::mouseClick(hosted->ui().sw_title, Qt::LeftButton);
        VirtualTime::advance(std::chrono::milliseconds(300));
        QCOMPARE(focused(), "frame_title "); // Qt moved the focus: the button is hidden

        open("0001010200");
        QApplication::setActiveWindow(&hosted->window);
        QCOMPARE(tabs(), "sw_title* rb_hand* rb_sport* frame_title* ");
        hosted->host.status = QByteArray::fromHex("0001000200");
        PanelInternals::poll(*hosted->panel);
        QCOMPARE(tabs(), "sw_title* rb_normal* rb_sport* sw_picture_mode* ");
        delete hosted->panel;
        QVERIFY(!hosted->window.findChild<QFocusFrame *>());
    }

    // The whole frame is in sight and differs from any background, also where the title row fills
    // its window.
    void focusFrame()
    {
        open();
        hosted->container->layout()->setContentsMargins({});
        hosted->window.layout()->setContentsMargins({});
        QApplication::setActiveWindow(&hosted->window);
        hosted->window.setAttribute(Qt::WA_KeyboardFocusChange);
        const QWidgetList controls{hosted->ui().frame_title, hosted->ui().rb_sport};
        for (QWidget *const control : controls) {
            hosted->window.setFocus();
            control->setFocus();
            VirtualTime::advance(std::chrono::milliseconds(100));
            const auto *const frame = hosted->window.findChild<QFocusFrame *>();
            const QImage seen = hosted->window.grab(frame->geometry()).toImage();
            for (const int inward : {0, 1}) {
                const QColor line(inward == 0 ? Qt::black : Qt::white);
                const QPoint corner = seen.rect().bottomRight() - QPoint(inward, inward);
                QCOMPARE(seen.pixelColor(inward, inward), line);
                QCOMPARE(seen.pixelColor(corner), line);
            }
        }
    }

    // Enter belongs to the dialog, except on a title row that shows the focus frame.
    void enterInDialog()
    {
        open();
        QDialog dialog;
        QDialogButtonBox box(QDialogButtonBox::Ok);
        auto *const layout = new QVBoxLayout(&dialog);
        layout->addWidget(hosted->container);
        layout->addWidget(&box);
        connect(&box, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
        QWidget *const title = hosted->ui().frame_title;
        for (QWidget *const focused :
             std::initializer_list<QWidget *>{hosted->ui().rb_hand, title}) {
            dialog.show();
            focused->setFocus();
            QTest::keyClick(focused, Qt::Key_Return);
            QVERIFY(dialog.isHidden());
        }
        dialog.show();
        dialog.setAttribute(Qt::WA_KeyboardFocusChange);
        QTest::keyClick(title, Qt::Key_Return);
        QVERIFY(dialog.isVisible() && hosted->ui().frame_spliter->isHidden());
    }
};

TEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
