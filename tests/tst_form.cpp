#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QFile>
#include <QResource>

/// The form and its texts, as far as the code and the user depend on them.
class TestForm : public Test
{
    Q_OBJECT

private Q_SLOTS:
    // What a host may answer to the question for its language.
    void texts_data()
    {
        const char *const english =
            "AI Tracking|Tracking Type|Basic|Hand|Board|Tracking Mode|Standard|Sport|"
            "Auto Composition|Half Body|Full Body|Bodies|Area Tracking|"
            "Non-tracking Area|100°|30°|-100°|-30°|Update";
        const char *const chinese =
            "AI跟踪|AI跟踪模式|常规|手部|白板|AI跟踪场景|标准|运动|自动构图|半身|全身|"
            "多人构图|区域跟踪|非跟踪区域|100°|30°|-100°|-30°|更新";
        QTest::addColumn<QVariant>("answer");
        QTest::addColumn<QString>("texts");
        QTest::newRow("1") << QVariant(1) << english;
        QTest::newRow("2") << QVariant(2) << chinese;
        QTest::newRow("bytes") << QVariant(QByteArray("1")) << english;
        QTest::newRow("a word") << QVariant("en") << chinese;
        QTest::newRow("nothing") << QVariant() << chinese;
    }

    // In the order of the form, every text that there is; and with every row in sight, none is cut
    // off.
    void texts()
    {
        VirtualTime::start();
        HostedPanel hosted;
        QFETCH(QVariant, answer);
        hosted.host.language = answer;
        hosted.insertAndShow();
        QCOMPARE(hosted.host.traffic.count("language"), 1);
        hosted.panel->setFixedWidth(374); // the width that it is made for
        const auto widgets = hosted.panel->findChildren<QWidget *>();
        for (QWidget *widget : widgets)
            widget->show();
        VirtualTime::advance(std::chrono::milliseconds(200)); // the deferred layout, and slides
        QStringList texts;
        for (const QWidget *widget : widgets) {
            const QString text = widget->property("text").toString();
            if (text.isEmpty())
                continue;
            texts << text;
            const QSize wanted = widget->sizeHint();
            QVERIFY2(wanted == wanted.boundedTo(widget->size()), qPrintable(text));
        }
        // One that no text of the form looks up.
        texts << QCoreApplication::translate("ControlTrackingPlugin", "update");
        QTEST(texts.join('|'), "texts");
    }

    // Each picture that a style sheet names is another one, and is there; the host brings some.
    void bundle()
    {
        QWidget root;
        Ui_root().setupUi(&root);
        QStringList files{":/Plugins/m24_tracking_en_US.qm", ":/Plugins/m24_tracking_zh_CN.qm"};
        const auto widgets = root.findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            const auto parts = widget->styleSheet().split("url(").mid(1);
            for (const QString &part : parts)
                files << part.section(')', 0, 0);
        }
        QCOMPARE(files.removeDuplicates(), 0);
        for (const QString &file : qAsConst(files)) {
            const QResource resource(file);
            QVERIFY2(resource.isValid() && !resource.isCompressed(), qPrintable(file));
        }
    }

    // Last, as catalogs stay.
    void catalogInChineseAlone()
    {
        struct Renamed : ControlTrackingPlugin
        {
            QString name() override { return "fallback"; }
        };
        HostedPanel hosted;
        delete hosted.panel;
        hosted.panel = new Renamed;
        hosted.host.installIn(*hosted.panel);
        hosted.insertAndShow();
        QCOMPARE(hosted.ui().label_title->text(), "退路");
    }
};

TEST_MAIN(TestForm)
#include "tst_form.moc"
