#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QFormLayout>
#include <QScreen>
#include <QStackedLayout>

/// The panel in its host: density, container, and the bytes that it makes up. Each run has a
/// density of its own.
class TestPanel : public Test
{
    Q_OBJECT

private:
    double factor = 1.0;

    /// The panel's place in a container with this layout, in a window without one.
    static int placeIn(QLayout *layout, bool withMargins = true)
    {
        RecordingHost host;
        auto *const panel = new ControlTrackingPlugin;
        host.installIn(*panel);
        QWidget window;
        auto *const container = new QWidget(&window);
        if (layout) {
            container->setLayout(layout);
            layout->addWidget(new QLabel("first"));
        }
        panel->insertWidget(container);
        window.show();
        VirtualTime::catchUp();
        const bool hasMargins = !container->layout()->contentsMargins().isNull();
        return hasMargins == withMargins ? container->layout()->indexOf(panel) : -1;
    }

private Q_SLOTS:
    void init()
    {
        VirtualTime::start();
        factor = QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96.0;
        QCOMPARE(factor, qgetenv("QT_FONT_DPI").toDouble() / 96.0);
        if (factor > 1.0) // the panel has no largest size, which cannot be scaled
            expectedWarnings.setPattern("The largest allowed size is");
    }

    // An animation whose switch has gone ends with the next tick.
    void cleanup() { VirtualTime::advance(std::chrono::milliseconds(50)); }

    void density()
    {
        HostedPanel hosted;
        hosted.insertAndShow();
        QCOMPARE(hosted.ui().sw_title->size(), QSize(40, 20) * factor);
        QCOMPARE(hosted.ui().sw_title->findChild<Slider *>()->width(), qRound(20 * factor) - 4);
        QCOMPARE(hosted.ui().frame_title->minimumHeight(), qRound(60 * factor));
        QCOMPARE(hosted.ui().wg_half_body->maximumHeight(), qRound(85 * factor));
    }

    void codec()
    {
        ControlTrackingPlugin plugin;
        // Most significant first, zeros up to the size and nothing beyond.
        QByteArray buffer(62, '\xAA');
        M24_Extension ext{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x42}, 4};
        ext.payload = reinterpret_cast<quint8 *>(buffer.data());
        plugin.fillPayload(ext, -0x01020304);
        const QByteArray expected = QByteArray::fromHex("FF53054204FEFDFCFC");
        QCOMPARE(buffer.toHex(), (expected.leftJustified(60, '\0') + "\xAA\xAA").toHex());

        QTest::ignoreMessage(QtDebugMsg, "setFloatValue :  1.5 , data :  0 , 0 , 192 , 63");
        plugin.setFloatValue(ext.payload, 1, 1.5F);
        QCOMPARE(buffer.left(12).toHex(), QByteArray("ff5305420000c03ffc000000"));
        QCOMPARE(plugin.getFloatValue(ext.payload, 1), 1.5F);
    }

    void containers()
    {
        QCOMPARE(placeIn(new QHBoxLayout), 0);
        QCOMPARE(placeIn(new QGridLayout), 1);
        QCOMPARE(placeIn(new QStackedLayout), 1);
        QCOMPARE(placeIn(new QFormLayout), 1);
        QCOMPARE(placeIn(nullptr, false), 0);
    }
};

TEST_MAIN(TestPanel)
#include "tst_panel.moc"
