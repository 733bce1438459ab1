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
    static QString placeIn(QLayout *layout)
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
        QString place = QString::number(container->layout()->indexOf(panel));
        if (!layout && container->layout()->contentsMargins().isNull())
            place += " without margins";
        window.show();
        HostedPanel::press(*PanelInternals::ui(*panel).rb_hand);
        place += window.updatesEnabled() ? "" : " frozen";
        VirtualTime::catchUp();
        return place + (window.updatesEnabled() ? " thawed" : "");
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

    // Most significant first, zeros up to the size and nothing beyond.
    void payload()
    {
        QByteArray buffer(62, '\xAA');
        M24_Extension ext{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x42}, 4};
        ext.payload = reinterpret_cast<quint8 *>(buffer.data());
        ControlTrackingPlugin().fillPayload(ext, -0x01020304);
        const QByteArray expected = QByteArray::fromHex("FF53054204FEFDFCFC");
        QCOMPARE(buffer.toHex(), (expected.leftJustified(60, '\0') + "\xAA\xAA").toHex());
    }

    void floatTable()
    {
        ControlTrackingPlugin plugin;
        unsigned char table[12] = {};
        QTest::ignoreMessage(QtDebugMsg, "setFloatValue :  1.5 , data :  0 , 0 , 192 , 63");
        plugin.setFloatValue(table, 1, 1.5F);
        QCOMPARE(QByteArray(reinterpret_cast<char *>(table), 12).toHex(),
                 QByteArray("000000000000c03f00000000"));
        QCOMPARE(plugin.getFloatValue(table, 1), 1.5F);
    }

    void containers()
    {
        QCOMPARE(placeIn(new QHBoxLayout), "0 frozen thawed");
        QCOMPARE(placeIn(new QGridLayout), "1 frozen thawed");
        QCOMPARE(placeIn(new QStackedLayout), "1 frozen thawed");
        QCOMPARE(placeIn(new QFormLayout), "1 frozen thawed");
        QCOMPARE(placeIn(nullptr), "0 without margins frozen thawed");
    }
};

TEST_MAIN(TestPanel)
#include "tst_panel.moc"
