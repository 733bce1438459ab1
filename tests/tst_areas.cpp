#include "support.h"

#include <QWindow>

#include <limits>

/// The row of non-tracking areas and the table behind it.
class TestAreas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void rowOfTiles_data();
    void rowOfTiles();
    void tile();
    void table_data();
    void table();
};

namespace {

/// A panel with its area row in sight, which nothing but a driver to come would show.
struct AreaPanel : HostedPanel
{
    AreaPanel()
    {
        host.status = QByteArray::fromHex("0001000100");
        insertAndShow();
        ui()->frame_limit_setting_spliter->show();
        settle(window);
        host.takeSent();
    }

    void add(int start, int end)
    {
        panel->insertUnLimitArea(start, end);
        QTRY_VERIFY(ui()->frame_unlimit->findChildren<QPressFrame *>().last()->isVisible());
    }

    QStringList texts()
    {
        QStringList texts;
        for (int i = 0; i < ui()->hl_unlimit->count() - 2; ++i)
            texts << ui()->hl_unlimit->itemAt(i)->widget()->findChild<QLabel *>()->text();
        return texts;
    }

    /// A mouse that goes to the place and, if asked to, clicks; the button finds itself.
    void mouse(QWidget *target, bool click)
    {
        const QPoint place = target->mapTo(&window, target->rect().center());
        QCursor::setPos(window.mapToGlobal(place));
        QCoreApplication::processEvents();
        if (click)
            QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place);
    }

    void remove(int index)
    {
        QWidget *const tile = ui()->hl_unlimit->itemAt(index)->widget();
        mouse(tile, false);
        auto *const button = tile->findChild<QPushButton *>("delete");
        QVERIFY(button->isVisible());
        mouse(button, true);
    }
};

} // namespace

void TestAreas::rowOfTiles_data()
{
    QTest::addColumn<QString>("order");
    for (const char *order : {"0", "10", "000", "010", "100", "110", "200", "210"})
        QTest::newRow(order) << order;
}

// Tiles in front of the add button, as many as the order names; deleted in that order.
void TestAreas::rowOfTiles()
{
    QFETCH(QString, order);
    AreaPanel area;
    QHBoxLayout *const row = area.ui()->hl_unlimit;
    QCOMPARE(row->count(), 2);
    QStringList expected;
    for (int i = 0; i < order.size(); ++i) {
        area.add(-30 - i, 30);
        expected << QStringLiteral("%1°/30°").arg(-30 - i);
        QCOMPARE(area.texts(), expected);
        QCOMPARE(area.ui()->pb_add->isHidden(), i == 2);
        QCOMPARE(row->itemAt(i + 1)->widget(), area.ui()->pb_add);
    }
    for (const QChar step : order) {
        area.remove(step.digitValue());
        expected.removeAt(step.digitValue());
        QCOMPARE(area.texts(), expected);
        QVERIFY(!area.ui()->pb_add->isHidden());
    }
    QCOMPARE(row->count(), 2);
    QCOMPARE(area.host.takeSent(), QStringList());
}

void TestAreas::tile()
{
    AreaPanel area;
    area.add(-100, -60);
    QWidget *const tile = area.ui()->hl_unlimit->itemAt(0)->widget();
    QCOMPARE(area.texts(), QStringList("-100°/-60°"));
    QCOMPARE(tile->width(), 91);
    QCOMPARE(tile->parentWidget(), area.ui()->frame_unlimit);
    auto *const button = tile->findChild<QPushButton *>("delete");
    QCOMPARE(button->geometry(), QRect(91 - 12 - 5, 5, 12, 12));
    QVERIFY(!button->isVisible());
    area.mouse(tile, false);
    QVERIFY(button->isVisible());
    area.mouse(area.ui()->pb_add, false);
    QVERIFY(!button->isVisible());
}

void TestAreas::table_data()
{
    QTest::addColumn<float>("count");
    QTest::addColumn<int>("valueLength");
    QTest::addColumn<int>("left"); // -1: the table is left alone
    QTest::newRow("three") << 3.F << 52 << 2;
    QTest::newRow("2.9 counts as 2") << 2.9F << 52 << 1;
    QTest::newRow("as many as there is room for") << 2.F << 36 << 1;
    QTest::newRow("none") << 0.F << 52 << -1;
    QTest::newRow("negative") << -1.F << 52 << -1;
    QTest::newRow("more than there is room for") << 4.F << 55 << -1;
    QTest::newRow("half a record of room") << 3.F << 51 << -1;
    QTest::newRow("no number") << std::numeric_limits<float>::quiet_NaN() << 52 << -1;
    QTest::newRow("no room for the count") << 1.F << 3 << -1;
}

void TestAreas::table()
{
    QFETCH(float, count);
    QFETCH(int, valueLength);
    QFETCH(int, left);
    AreaPanel area;
    QByteArray table(valueLength, '\x11'); // of this size, so that a sanitizer sees its end
    memcpy(table.data(), &count, size_t(qMin(valueLength, 4)));
    const QByteArray before = table;
    auto descriptor = QSharedPointer<M24_Extension>::create(
        M24_Extension{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x20}, quint8(valueLength)});
    descriptor->payload = PanelInternals::payloadBuffer(*area.panel);
    descriptor->valueData = reinterpret_cast<quint8 *>(table.data());
    PanelInternals::areaTable(*area.panel) = descriptor;
    QByteArray sent;
    area.panel->commandChannel = [&sent](int, const QVariant &record) {
        const auto unit = record.value<ExtensionUnit>();
        sent = QByteArray(reinterpret_cast<const char *>(unit.data), int(unit.length));
        return QVariant();
    };
    area.add(0, 100);
    area.remove(0);
    QByteArray expected = before;
    if (left >= 0) {
        const auto newCount = float(left);
        memcpy(expected.data(), &newCount, 4);
        expected.replace(4 + 16 * left, 16, QByteArray(16, '\0'));
        QCOMPARE(sent.toHex(), (QByteArray::fromHex("FF530520") + char(valueLength) + expected)
                                   .leftJustified(60, '\0')
                                   .toHex());
    } else {
        QVERIFY(sent.isEmpty());
    }
    QCOMPARE(table.toHex(), expected.toHex());
}

TEST_MAIN(TestAreas)
#include "tst_areas.moc"
