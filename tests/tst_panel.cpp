#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QGridLayout>
#include <QResource>
#include <QScreen>

/// The panel's look and texts, and its place in the host. Runs at several pixel densities.
class TestPanel : public Test
{
    Q_OBJECT

private:
    double factor = 1.0;

private Q_SLOTS:
    void init()
    {
        VirtualTime::start();
        factor = QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96.0;
        if (factor > 1.0) // the panel has no maximum size to scale
            expectedWarnings.setPattern("The largest allowed size is");
    }

    void density()
    {
        QCOMPARE(factor, qgetenv("QT_FONT_DPI").toDouble() / 96.0);
        HostedPanel hosted;
        hosted.insertAndShow();
        QCOMPARE(hosted.ui().sw_title->size(), QSize(40, 20) * factor);
        QCOMPARE(hosted.ui().frame_title->minimumHeight(), qRound(60 * factor));
    }

    void texts_data()
    {
        QTest::addColumn<QVariant>("language");
        QTest::addColumn<QString>("texts");
        QTest::newRow("English")
            << QVariant(1)
            << "AI Tracking|Tracking Type|Basic|Hand|Board|Tracking Mode|Standard|Sport|"
               "Auto Composition|Half Body|Full Body|Bodies|Area Tracking|"
               "Non-tracking Area|100°|30°|-100°|-30°|Update";
        QTest::newRow("Chinese unless the host answers 1")
            << QVariant()
            << "AI跟踪|AI跟踪模式|常规|手部|白板|AI跟踪场景|标准|运动|自动构图|半身|全身|"
               "多人构图|区域跟踪|非跟踪区域|100°|30°|-100°|-30°|更新";
    }

    // All texts in the order of the form. None is cut off, even with every row visible.
    void texts()
    {
        HostedPanel hosted;
        QFETCH(QVariant, language);
        hosted.host.language = language;
        hosted.insertAndShow();
        hosted.panel->setFixedWidth(qRound(374 * factor)); // the design width
        const auto widgets = hosted.panel->findChildren<QWidget *>();
        for (QWidget *widget : widgets)
            widget->show();
        VirtualTime::advance(std::chrono::milliseconds(200));
        QStringList texts;
        for (const QWidget *widget : widgets) {
            const QString text = widget->property("text").toString();
            if (text.isEmpty())
                continue;
            texts << text;
            const QSize wanted = widget->sizeHint();
            QVERIFY2(wanted == wanted.boundedTo(widget->size()), qPrintable(text));
        }
        // The only text that the form does not use.
        texts << QCoreApplication::translate("ControlTrackingPlugin", "update");
        QTEST(texts.join('|'), "texts");
    }

    // The last test of texts: its catalog stays installed.
    void textsFallBackToChinese()
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

    // Each picture that a style sheet names exists; some are the host's.
    void pictures()
    {
        QWidget root;
        Ui_root().setupUi(&root);
        int pictures = 0;
        const auto widgets = root.findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            const auto parts = widget->styleSheet().split("url(").mid(1);
            for (const QString &part : parts) {
                const QString file = part.section(')', 0, 0);
                QVERIFY2(QResource(file).isValid(), qPrintable(file));
                ++pictures;
            }
        }
        QVERIFY(pictures > 5);
    }

    // First in a box, the next item elsewhere. A container without a layout gets one.
    void place()
    {
        QLayout *const layouts[] = {new QHBoxLayout, new QGridLayout, nullptr};
        const int places[] = {0, 1, 0};
        for (int i = 0; i < 3; ++i) {
            HostedPanel hosted;
            delete hosted.container->layout();
            if (layouts[i]) {
                hosted.container->setLayout(layouts[i]);
                layouts[i]->addWidget(new QLabel("first"));
            }
            hosted.insertAndShow();
            QCOMPARE(hosted.container->layout()->indexOf(hosted.panel), places[i]);
            QCOMPARE(hosted.container->layout()->contentsMargins().isNull(), !layouts[i]);
        }
    }

    // Most significant byte first, zeros up to the payload's size, and nothing beyond.
    void codec()
    {
        ControlTrackingPlugin plugin;
        QByteArray buffer(62, '\xAA');
        M24_Extension ext{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x42}, 4};
        ext.payload = reinterpret_cast<quint8 *>(buffer.data());
        plugin.fillPayload(ext, -0x01020304);
        const QByteArray expected = QByteArray::fromHex("FF53054204FEFDFCFC");
        QCOMPARE(buffer.toHex(), (expected.leftJustified(60, '\0') + "\xAA\xAA").toHex());

        QTest::ignoreMessage(QtDebugMsg, "setFloatValue :  1.5 , data :  0 , 0 , 192 , 63");
        plugin.setFloatValue(ext.payload, 1, 1.5F);
        QCOMPARE(buffer.mid(4, 4).toHex(), QByteArray("0000c03f"));
        QCOMPARE(plugin.getFloatValue(ext.payload, 1), 1.5F);
    }
};

TEST_MAIN(TestPanel)
#include "tst_panel.moc"
