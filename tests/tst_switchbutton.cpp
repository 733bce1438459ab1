#include "support.h"
#include "switchbutton.h"

#include <QPainter>
#include <QPainterPath>
#include <QSignalSpy>

class TestSwitchButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void reports_data();
    void reports();
    void knob();
    void track_data();
    void track();
    void resizeThroughLayout();
    void deletedByItsReceiver();
};

void TestSwitchButton::reports_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QList<int>>("reported");
    QTest::addColumn<bool>("on");
    const auto row = [](const char *script, const QList<int> &reported, bool on) {
        QTest::newRow(script) << QString(script) << reported << on;
    };
    row("press wait press wait", {1, 0}, false);
    row("press press wait", {1}, true);
    row("set1 wait", {1}, true);
    row("silence force0 press wait", {1}, true);
    row("silence set1 wait press wait", {0}, false);
    row("silence set0 press wait", {1}, true);
    row("silence press wait", {}, true);
    row("press set0 wait", {1}, true);
    row("press force0 wait", {1, 1}, true);
    row("press silence force0 wait", {1}, true);
    row("set1 press wait", {1}, true);
    row("relayout press wait", {}, true);
    row("relayout relayout wait press wait", {1}, true);
    row("relayout set0 wait", {}, false);
    row("relayout turn set0 wait", {}, false);
    row("set1 wait relayout wait", {1}, true);
    row("layOut press wait", {1}, true);
    row("press layOut wait", {1}, true);
    row("set1 layOut wait", {1}, true);
    row("silence set1 layOut wait press wait", {0}, false);
}

void TestSwitchButton::reports()
{
    QFETCH(QString, script);
    SwitchButton button(nullptr);
    button.resize(QSize(40, 20));
    button.show();
    const auto wait = [&button] {
        QTest::qWait(slideOver);
        QVERIFY(QTest::qWaitFor([&] { return !button.isSliding(); }));
    };
    wait();

    QList<int> reported;
    connect(&button, &SwitchButton::onValueChanged, this, [&](int on) { reported << on; });
    const auto steps = script.split(' ');
    for (const QString &step : steps) {
        if (step == "press")
            QTest::mousePress(&button, Qt::LeftButton);
        else if (step == "set0" || step == "set1")
            button.SetStatus(step == "set1", false);
        else if (step == "force0")
            button.SetStatus(false, true);
        else if (step == "silence")
            button.blockNextSignal();
        else if (step == "relayout")
            button.SetSize(40, 20);
        else if (step == "turn")
            QTest::qWait(20); // of the event loop, with the slide under way
        else if (step == "layOut")
            button.layOut();
        else
            wait();
    }
    QTEST(reported, "reported");
    QTEST(button.GetStatus(), "on");
    QTRY_COMPARE(button.findChild<Slider *>()->geometry(),
                 QRect(button.GetStatus() ? 22 : 2, 2, 16, 16));
}

void TestSwitchButton::knob()
{
    SwitchButton button(nullptr);
    button.resize(QSize(60, 30));
    auto *const knob = button.findChild<Slider *>();
    QCOMPARE(knob->geometry(), QRect(2, 2, 26, 26));
    QCOMPARE(knob->width(), 26);
    button.SetStatus(true, false);
    QVERIFY(button.GetStatus());
    QTRY_COMPARE(knob->geometry(), QRect(32, 2, 26, 26));

    // Turned on again by a new size, it starts from the far left.
    button.setFixedSize(QSize(40, 20));
    QCOMPARE(knob->geometry(), QRect(22, 2, 16, 16));
    QTRY_VERIFY(knob->x() < 12);
    QTRY_COMPARE(knob->geometry(), QRect(22, 2, 16, 16));
}

void TestSwitchButton::track_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("off") << false << true << QColor("#3A3F46");
    QTest::newRow("on") << true << true << QColor("#E60033");
    QTest::newRow("recoloured") << true << true << QColor("#1188FF");
    QTest::newRow("disabled on") << true << false << QColor("#666666");
}

void TestSwitchButton::track()
{
    QFETCH(bool, on);
    QFETCH(bool, enabled);
    QFETCH(QColor, colour);
    SwitchButton button(nullptr);
    button.resize(QSize(40, 20));
    if (enabled && on)
        button.SetActiveColor(colour);
    button.SetStatus(on, false);
    button.setEnabled(enabled);
    QTRY_VERIFY(!button.isSliding());
    QTest::qWait(slideOver);
    auto *const knob = button.findChild<Slider *>();

    QImage expected(40, 20, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    QPainterPath pill;
    pill.addEllipse(0, 0, 20, 20);
    QPainterPath middle;
    middle.addRect(10, 0, 20, 20);
    QPainterPath cap;
    cap.addEllipse(20, 0, 20, 20);
    painter.drawPath(pill + middle + cap);
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob->geometry());
    painter.end();

    QImage painted(40, 20, QImage::Format_ARGB32_Premultiplied);
    painted.fill(Qt::transparent);
    button.render(&painted, {}, {}, QWidget::DrawChildren);
    QCOMPARE(painted, expected);
}

void TestSwitchButton::resizeThroughLayout()
{
    QWidget row;
    QHBoxLayout layout(&row);
    auto *const button = new SwitchButton(&row);
    layout.addWidget(button);
    row.show();
    QTest::qWait(slideOver);
    QSignalSpy reports(button, &SwitchButton::onValueChanged);
    QSignalSpy slides(button, &SwitchButton::sendAnimate);
    row.resize(row.width() + 40, row.height());
    QTRY_COMPARE(slides.count(), 1);
    QTest::qWait(slideOver);
    QCOMPARE(reports.count(), 0);
}

void TestSwitchButton::deletedByItsReceiver()
{
    QPointer<SwitchButton> button(new SwitchButton(nullptr));
    connect(button, &SwitchButton::onValueChanged, this, [&] { delete button; });
    button->SetStatus(true, false);
    QTRY_VERIFY(!button);
    button = new SwitchButton(nullptr);
    connect(button, &SwitchButton::onValueChanged, this, [&] { delete button; });
    button->SetStatus(false, true);
    QVERIFY(!button);
}

TEST_MAIN(TestSwitchButton)
#include "tst_switchbutton.moc"
