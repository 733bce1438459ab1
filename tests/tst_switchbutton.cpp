#include "switchbutton.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QPointer>

using namespace std::chrono_literals;
using VirtualTime::advance;

class TestSwitchButton : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void init() { VirtualTime::start(); }

    // Steps on a switch that is off: its reports, and its final state.
    void reports_data()
    {
        QTest::addColumn<QString>("expected");
        QTest::newRow("press press wait press wait") << "1 0 : off";
        QTest::newRow("press set0 force0 wait") << "1 1 : on";
        QTest::newRow("block force0 press wait") << "1 : on";
        QTest::newRow("relayout press wait") << ": on";
        QTest::newRow("relayout turn set0 wait") << ": off";
        QTest::newRow("set1 wait relayout wait") << "1 : on";
        QTest::newRow("resize press wait") << "1 : on";
        QTest::newRow("press turn resize wait") << "1 : on";
        QTest::newRow("block set1 resize wait press wait") << "0 : off";
        QTest::newRow("resize turn block set1 wait") << ": on";
    }

    void reports()
    {
        SwitchButton button(nullptr);
        button.resize(QSize(40, 20));
        button.show();
        advance(150ms);
        QString said;
        connect(&button, &SwitchButton::onValueChanged, this,
                [&](int on) { said += QString::number(on) + ' '; });
        const auto steps = QString(QTest::currentDataTag()).split(' ');
        for (const QString &step : steps) {
            if (step == "press")
                QTest::mousePress(&button, Qt::LeftButton);
            else if (step == "block")
                button.blockNextSignal();
            else if (step == "relayout")
                button.SetSize(40, 20);
            else if (step == "resize") // as a layout does it
                button.QWidget::resize(60, 30);
            else if (step == "turn") // of the event loop, shorter than the slide
                advance(20ms);
            else if (step == "wait")
                advance(150ms);
            else
                button.SetStatus(step == "set1", step == "force0");
        }
        QTEST(said + (button.GetStatus() ? ": on" : ": off"), "expected");
        QVERIFY(!button.isSliding());
        const int right = button.width() - button.height() + 2;
        QCOMPARE(button.findChild<Slider *>()->x(), button.GetStatus() ? right : 2);
    }

    void geometry()
    {
        SwitchButton button(nullptr);
        auto *const knob = button.findChild<Slider *>();
        button.SetStatus(true, false);
        button.setGeometry(QRect(5, 5, 50, 24));
        QCOMPARE(knob->geometry(), QRect(28, 2, 20, 20));
        advance(150ms);
        // A hidden switch is laid out at once; then its knob slides in from the far left.
        button.resize(QSize(60, 30));
        QCOMPARE(knob->geometry(), QRect(32, 2, 26, 26));
        button.setFixedSize(QSize(40, 20));
        QCOMPARE(knob->geometry(), QRect(22, 2, 16, 16));
        advance(30ms);
        QVERIFY(knob->x() < 12);
        advance(150ms);
        button.show(); // does not slide: the size is the same
        advance(30ms);
        QCOMPARE(knob->geometry(), QRect(22, 2, 16, 16));
    }

    void looks()
    {
        SwitchButton button(nullptr);
        button.grab(); // at another size first
        button.resize(QSize(40, 20));
        const auto pixels = [&button](int y) { // in letters; ~ is an edge
            QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            button.render(&image, {}, {}, QWidget::DrawChildren);
            static const QHash<QRgb, QChar> names{
                {0, '.'},          {0xff3a3f46, 'o'}, {0xffe60033, 'I'}, {0xffffffff, 'k'},
                {0xff666666, '-'}, {0xff88ff11, 'O'}, {0xff1188ff, 'i'}, {0xffff1188, 'K'}};
            QString line;
            for (int x = 0; x < 40; ++x)
                line += names.value(image.pixel(x, y), '~');
            return line;
        };
        QCOMPARE(pixels(0), ".....~~~~~oooooooooooooooooooo~~~~~.....");
        QCOMPARE(pixels(3), "..~o~~~kkkkkk~~~ooooooooooooooooooooo~..");
        button.SetStatus(true, false);
        advance(150ms);
        QCOMPARE(pixels(10), "~IIIIIIIIIIIIIIIIIIIII~kkkkkkkkkkkkkk~I~");
        button.SetInactiveColor(QColor(0x88ff11));
        button.SetActiveColor(QColor(0x1188ff));
        button.SetSliderColor(QColor(0xff1188));
        QCOMPARE(pixels(10), "~iiiiiiiiiiiiiiiiiiiii~KKKKKKKKKKKKKK~i~");
        button.SetStatus(false, false);
        advance(150ms);
        QCOMPARE(pixels(10), "~O~KKKKKKKKKKKKKK~OOOOOOOOOOOOOOOOOOOOO~");
        button.setEnabled(false);
        QCOMPARE(pixels(10), "~-~KKKKKKKKKKKKKK~---------------------~");
    }

    // The receiver of a report changes the switch again, or deletes it.
    void usedByItsReceiver()
    {
        for (const bool on : {false, true}) {
            QPointer<SwitchButton> button(new SwitchButton(nullptr));
            connect(button, &SwitchButton::onValueChanged, this, [&](int open) {
                if (open == 0)
                    delete button;
                else
                    button->SetStatus(false, false);
            });
            button->SetStatus(on, true);
            advance(300ms);
            QVERIFY(!button);
        }
    }
};

TEST_MAIN(TestSwitchButton)
#include "tst_switchbutton.moc"
