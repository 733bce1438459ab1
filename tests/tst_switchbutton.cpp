#include "support.h"
#include "switchbutton.h"

#include <QSignalSpy>

class TestSwitchButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void reports_data();
    void reports();
    void geometry();
    void looks();
    void usedByItsReceiver();
};

// What is done to a switch that is off; what it reports, and its state in the end.
void TestSwitchButton::reports_data()
{
    QTest::addColumn<QString>("expected");
    QTest::newRow("press press wait press wait") << "1 0 : off";
    QTest::newRow("set1 press wait") << "1 : on";
    QTest::newRow("press set0 force0 wait") << "1 1 : on";
    QTest::newRow("press silence force0 wait") << "1 : on";
    QTest::newRow("silence force0 press wait") << "1 : on";
    QTest::newRow("silence set1 layOut wait press wait") << "0 : off";
    QTest::newRow("relayout press wait") << ": on";
    QTest::newRow("relayout relayout wait press wait") << "1 : on";
    QTest::newRow("relayout turn set0 wait") << ": off";
    QTest::newRow("set1 wait relayout wait") << "1 : on";
    QTest::newRow("layOut press layOut wait") << "1 : on";
}

void TestSwitchButton::reports()
{
    SwitchButton button(nullptr);
    button.resize(QSize(40, 20));
    button.show();
    QTest::qWait(slideOver);
    QString said;
    connect(&button, &SwitchButton::onValueChanged, this,
            [&](int on) { said += QString::number(on) + ' '; });
    const auto words = QString(QTest::currentDataTag()).split(' ');
    for (const QString &word : words) {
        if (word == "press") {
            QTest::mousePress(&button, Qt::LeftButton);
        } else if (word == "silence") {
            button.blockNextSignal();
        } else if (word == "relayout") {
            button.SetSize(40, 20);
        } else if (word == "layOut") {
            button.layOut();
        } else if (word == "turn") {
            QTest::qWait(20); // of the event loop, with the slide under way
        } else if (word == "wait") {
            QTest::qWait(slideOver);
            QTRY_VERIFY(!button.isSliding());
        } else {
            button.SetStatus(word == "set1", word == "force0");
        }
    }
    QTEST(said + (button.GetStatus() ? ": on" : ": off"), "expected");
    QTRY_COMPARE(button.findChild<Slider *>()->x(), button.GetStatus() ? 22 : 2);
}

void TestSwitchButton::geometry()
{
    SwitchButton button(nullptr);
    auto *const knob = button.findChild<Slider *>();
    button.resize(QSize(60, 30));
    QCOMPARE(knob->geometry(), QRect(2, 2, 26, 26));
    button.SetStatus(true, false);
    QTRY_COMPARE(knob->geometry(), QRect(32, 2, 26, 26));
    button.setGeometry(QRect(5, 5, 50, 24));
    QCOMPARE(knob->geometry(), QRect(28, 2, 20, 20));
    QTest::qWait(slideOver);
    // Laid out at once, also while hidden; then it slides in again from the far left.
    button.setFixedSize(QSize(40, 20));
    QCOMPARE(knob->geometry(), QRect(22, 2, 16, 16));
    QTRY_VERIFY(knob->x() < 12);
    QTRY_COMPARE(knob->geometry(), QRect(22, 2, 16, 16));
    // The first show brings nothing new; a layout resizes as any widget is resized.
    QSignalSpy slides(&button, &SwitchButton::sendAnimate);
    button.show();
    settle(button);
    QCOMPARE(slides.count(), 0);
    button.QWidget::setFixedSize(60, 30);
    QTRY_COMPARE(slides.count(), 1);
    QCOMPARE(knob->width(), 26);
}

void TestSwitchButton::looks()
{
    const char *const colours[][3] = {{"#3A3F46", "#E60033", "#FFFFFF"}, // off, on, knob
                                      {"#666666", "#666666", "#FFFFFF"}, // disabled
                                      {"#88FF11", "#1188FF", "#FF1188"}};
    for (int i = 0; i < 6; ++i) {
        const auto &[off, on, knob] = colours[i / 2];
        SwitchButton button(nullptr);
        button.grab(); // at another size first
        button.resize(QSize(40, 20));
        button.setEnabled(i / 2 != 1);
        if (i / 2 == 2) {
            button.SetInactiveColor(off);
            button.SetActiveColor(on);
            button.SetSliderColor(knob);
        }
        button.SetStatus(i % 2 == 1, false);
        const QRect place(i % 2 == 1 ? 22 : 2, 2, 16, 16);
        QTRY_COMPARE(button.findChild<Slider *>()->geometry(), place);

        QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        button.render(&image, {}, {}, QWidget::DrawChildren);
        // Along the pill, which has neither holes nor corners; the knob lies on it.
        for (const int x : {1, 9, 13, 19, 20, 26, 30, 38})
            QCOMPARE(image.pixelColor(x, 10), QColor(place.contains(x, 10) ? knob
                                                     : i % 2 == 1          ? on
                                                                           : off));
        for (const QPoint corner : {QPoint(1, 1), QPoint(38, 1), QPoint(38, 18), QPoint(1, 18)})
            QCOMPARE(image.pixelColor(corner).alpha(), 0);
    }
}

// The receiver may set the switch again, or delete it.
void TestSwitchButton::usedByItsReceiver()
{
    for (const bool on : {true, false}) {
        QPointer<SwitchButton> button(new SwitchButton(nullptr));
        connect(button, &SwitchButton::onValueChanged, this, [&](int open) {
            if (open == 0)
                delete button;
            else
                button->SetStatus(false, false);
        });
        button->SetStatus(on, true);
        QTRY_VERIFY(!button);
    }
}

TEST_MAIN(TestSwitchButton)
#include "tst_switchbutton.moc"
