#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <cstring>
#include <limits>
#include <utility>

/// The panel's texts, place in the host, commands and area tiles. Runs at several pixel
/// densities.
class TestPanel : public Test
{
    Q_OBJECT

private:
    double factor = 1.0;

private Q_SLOTS:
    void init()
    {
        VirtualTime::start();
        factor = qgetenv("QT_FONT_DPI").toDouble() / 96.0;
        if (factor > 1.0) // the panel has no maximum size to scale
            expectedWarnings.setPattern("The largest allowed size is");
    }

    // Must run first: another catalog would translate the texts, too.
    void textsFallBackToChinese()
    {
        struct Renamed : ControlTrackingPlugin
        {
            // The catalog that is asked for first does not exist.
            QString name() override { return std::exchange(current, "m24_tracking"); }
            QString current = "missing";
        };
        HostedPanel hosted;
        delete hosted.panel;
        hosted.panel = new Renamed;
        hosted.host.installIn(*hosted.panel);
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        hosted.insertAndShow();
        QCOMPARE(hosted.ui().label_title->text(), "AI跟踪");
        QCOMPARE(QGuiApplication::layoutDirection(), Qt::RightToLeft); // the host's
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
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

    // The texts of all widgets, in the order of the form. None is cut off at the design width.
    void texts()
    {
        HostedPanel hosted;
        QFETCH(QVariant, language);
        hosted.host.language = language;
        hosted.insertAndShow();
        QCOMPARE(hosted.ui().sw_title->size(), QSize(40, 20) * factor);
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

    // The panel is first in a box layout. A container without a layout gets one without margins.
    void place()
    {
        for (QLayout *const layout : std::initializer_list<QLayout *>{new QHBoxLayout, nullptr}) {
            HostedPanel hosted;
            delete hosted.container->layout();
            if (layout) {
                hosted.container->setLayout(layout);
                layout->addWidget(new QLabel("first"));
            }
            hosted.insertAndShow();
            QCOMPARE(hosted.container->layout()->indexOf(hosted.panel), 0);
            QCOMPARE(hosted.container->layout()->contentsMargins().isNull(), !layout);
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
        plugin.setFloatValue(ext.payload, 1, 1.5F);
        QCOMPARE(buffer.mid(4, 4).toHex(), QByteArray("0000c03f"));
        QCOMPARE(plugin.getFloatValue(ext.payload, 1), 1.5F);
    }

    void areaTable_data()
    {
        QTest::addColumn<float>("count");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("left");
        QTest::newRow("a fraction does not count") << 2.9F << 52 << 1;
        QTest::newRow("less than one") << 0.9F << 52 << -1;
        QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN() << 52 << -1;
        QTest::newRow("a record that is cut off") << 2.0F << 35 << -1;
        QTest::newRow("as many as fit") << 1.0F << 20 << 0;
        QTest::newRow("no room for a record") << 1.0F << 19 << -1;
        QTest::newRow("as long as a payload") << 3.0F << 55 << 2;
    }

    // The table holds a count and records of 16 bytes. Deleting a tile clears the last record and
    // sends the table with the new count, `left`. If the count is invalid (-1), it does neither.
    void areaTable()
    {
        QFETCH(float, count);
        QFETCH(int, size);
        QFETCH(int, left);
        QByteArray table(size, '\x11');
        std::memcpy(table.data(), &count, sizeof count);
        QByteArray expected = table;
        if (left >= 0) {
            const auto remaining = float(left);
            std::memcpy(expected.data(), &remaining, sizeof remaining);
            expected.replace(4 + 16 * left, 16, QByteArray(16, '\0'));
        }
        quint8 payload[60];
        M24_Extension setting{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x42}, quint8(size), payload};
        setting.valueData = reinterpret_cast<quint8 *>(table.data());
        HostedPanel hosted;
        hosted.insertAndShow();
        hosted.panel->insertUnLimitArea(-30, 30);
        PanelInternals::areaTable(*hosted.panel).reset(new M24_Extension(setting));
        hosted.host.takeRequests();
        hosted.panel->findChild<QPushButton *>("delete")->click();
        QByteArray sent;
        const auto requests = hosted.host.takeRequests();
        for (const Request &request : requests)
            sent += request.bytes();
        QCOMPARE(table.toHex(), expected.toHex());
        const QByteArray command = "\xFF\x53\x05\x42" + QByteArray(1, char(size)) + table;
        QCOMPARE(sent, left < 0 ? QByteArray() : command.leftJustified(60, '\0'));
    }

    // Without a table, a deletion only removes the tile.
    void areaTiles()
    {
        HostedPanel hosted;
        hosted.insertAndShow();
        for (const int start : {-100, -30, 0})
            hosted.panel->insertUnLimitArea(start, start + 30);
        QVERIFY(hosted.ui().pb_add->isHidden());
        QWidget *const tile = hosted.ui().hl_unlimit->itemAt(1)->widget();
        auto *const angles = tile->findChild<QLabel *>();
        QCOMPARE(angles->text(), "-30°/0°");
        QCOMPARE(angles->width(), tile->width());
        QCOMPARE(angles->palette().color(QPalette::WindowText), QColor::fromRgba(0x99CECEDA));
        QCOMPARE(tile->grab().toImage().pixelColor(0, 17), QColor(0x282B30));
        auto *const button = tile->findChild<QPushButton *>("delete");
        for (const auto type : {QEvent::Enter, QEvent::Leave}) {
            QEvent hover(type);
            QCoreApplication::sendEvent(tile, &hover);
            QCOMPARE(button->isHidden(), type == QEvent::Leave);
        }
        button->click();
        QCOMPARE(hosted.panel->findChildren<QPushButton *>("delete").size(), 2);
        QVERIFY(!hosted.ui().pb_add->isHidden());
    }
};

TEST_MAIN(TestPanel)
#include "tst_panel.moc"
