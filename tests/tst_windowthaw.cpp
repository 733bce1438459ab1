#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QWindow>

#include <thread>

using namespace std::chrono_literals;
using VirtualTime::advance;
using VirtualTime::catchUp;

/// Rows change in a frozen window, which is thawed on the next turn of the event loop. Whatever
/// happens until then, no window stays frozen.
class TestWindowThaw : public Test
{
    Q_OBJECT

private:
    QScopedPointer<HostedPanel> hosted;
    QWidget other; ///< another window of the host
    int paints = 0;

private Q_SLOTS:
    void init()
    {
        VirtualTime::start();
        hosted.reset(new HostedPanel);
        hosted->insertAndShow();
        other.show();
        // Unlike the offscreen platform, an X server exposes the window in real time.
        for (int i = 0; i < 5000 && !hosted->window.windowHandle()->isExposed(); ++i, catchUp())
            std::this_thread::sleep_for(1ms);
        advance(250ms);
    }

    void cleanup()
    {
        advance(150ms);
        const auto windows = QApplication::topLevelWidgets();
        for (const QWidget *window : windows)
            QVERIFY(window->updatesEnabled());
        hosted.reset();
    }

    // The panel first becomes a window itself, then moves to a window without a layout.
    void panelMovesToAnotherWindow()
    {
        expectedWarnings.setPattern("does not support setParent"); // offscreen
        hosted->press("rb_hand");
        hosted->panel->setParent(nullptr);
        hosted->panel->show();
        catchUp();
        QVERIFY(hosted->panel->updatesEnabled());
        hosted->press("sw_title");
        hosted->panel->setParent(&other);
        hosted->panel->show();
        advance(250ms);
        QCOMPARE(hosted->shown(), "off plain hand normal");
    }

    void windowIsDeletedMeanwhile()
    {
        hosted->press("rb_hand");
        QTimer::singleShot(0, qApp, [this] { hosted.reset(); });
        catchUp();
        QVERIFY(!hosted);
    }

    void dialogOpensMeanwhile()
    {
        bool isThawed = false;
        hosted->press("rb_hand");
        QTimer::singleShot(0, qApp, [&] {
            advance(100ms); // as the event loop of a dialog does
            isThawed = hosted->window.updatesEnabled();
        });
        catchUp();
        QVERIFY(isThawed);
    }

    // A window that the host froze itself stays frozen.
    void widgetLeavesItsWindow()
    {
        QLabel label;
        {
            QWidget old;
            (new QVBoxLayout(&old))->addWidget(&label);
            hosted->panel->updateSpliter(&old, &label, true);
            label.setParent(nullptr);
        }
        other.setUpdatesEnabled(false);
        catchUp();
        QVERIFY(label.updatesEnabled() && !other.updatesEnabled());
        other.setUpdatesEnabled(true);
    }

    // A thaw paints the window twice, once for itself and once for its children, however many rows
    // changed.
    void paintsAreFew()
    {
        hosted->press("sw_picture_mode");
        advance(250ms);
        hosted->window.installEventFilter(this);
        for (const char *const what : {"frame_title", "frame_title", "rb_hand", "rb_normal"}) {
            paints = 0;
            hosted->press(what);
            advance(250ms);
            QCOMPARE(paints, 2);
        }
    }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        paints += int(event->type() == QEvent::Paint);
        return false;
    }
};

TEST_MAIN(TestWindowThaw)
#include "tst_windowthaw.moc"
