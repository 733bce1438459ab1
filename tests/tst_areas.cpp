#include "hostedpanel.h"
#include "testmain.h"

#include <cstring>
#include <limits>

class TestAreas : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void deletion_data()
    {
        QTest::addColumn<float>("count");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("left");
        const auto row = [](const char *name, float count, int size, int left) {
            QTest::newRow(name) << count << size << left;
        };
        row("three areas", 3, 52, 2);
        row("the last one", 1, 52, 0);
        row("a fraction does not count", 2.9F, 52, 1);
        row("less than one", 0.9F, 52, -1);
        row("negative", -1, 52, -1);
        row("not a number", std::numeric_limits<float>::quiet_NaN(), 52, -1);
        row("infinite", std::numeric_limits<float>::infinity(), 52, -1);
        row("more than fit", 4, 52, -1);
        row("a record that is cut off", 2, 35, -1);
        row("as many as fit", 2, 36, 1);
        row("no room for a record", 1, 19, -1);
        row("no room for a count", 1, 3, -1);
        row("as long as a payload", 3, 55, 2);
    }

    // The table holds a count and records of 16 bytes. A deleted tile takes the last record with it
    // and sends the table, unless the count makes no sense (-1).
    void deletion()
    {
        QFETCH(float, count);
        QFETCH(int, size);
        QFETCH(int, left);
        QByteArray table(size, '\x11');
        std::memcpy(table.data(), &count, std::size_t(qMin(size, 4)));
        QByteArray expected = table;
        if (left >= 0) {
            const float remaining = float(left);
            std::memcpy(expected.data(), &remaining, sizeof remaining);
            expected.replace(4 + 16 * left, 16, QByteArray(16, '\0'));
        }
        quint8 payload[60];
        HostedPanel hosted;
        hosted.insertAndShow();
        hosted.panel->insertUnLimitArea(-30, 30);
        PanelInternals::areaTable(*hosted.panel)
            .reset(new M24_Extension{7,
                                     8,
                                     0,
                                     sizeof payload,
                                     {0xFF, 0x53, 0x05, 0x42},
                                     quint8(size),
                                     payload,
                                     reinterpret_cast<quint8 *>(table.data())});
        QByteArray sent;
        hosted.panel->commandChannel = [&sent](int, const QVariant &record) {
            const auto unit = record.value<ExtensionUnit>();
            sent += QByteArray(reinterpret_cast<const char *>(unit.data), int(unit.length));
            return QVariant();
        };
        hosted.panel->findChild<QPushButton *>("delete")->click();
        QCOMPARE(table.toHex(), expected.toHex());
        const QByteArray command = "\xFF\x53\x05\x42" + QByteArray(1, char(size)) + table;
        QCOMPARE(sent, left < 0 ? QByteArray() : command.leftJustified(60, '\0'));
    }

    // Without a table, a deletion only removes the tile.
    void tiles()
    {
        HostedPanel hosted;
        hosted.insertAndShow();
        for (const int start : {-100, -30, 0})
            hosted.panel->insertUnLimitArea(start, start + 30);
        QVERIFY(hosted.ui().pb_add->isHidden());
        QWidget *const tile = hosted.ui().hl_unlimit->itemAt(1)->widget();
        QCOMPARE(tile->findChild<QLabel *>()->text(), "-30°/0°");
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

TEST_MAIN(TestAreas)
#include "tst_areas.moc"
