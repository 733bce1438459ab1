#include "support.h"

#include <QWindow>
#include <QtNumeric>

/// The row of non-tracking areas and the table behind it.
class TestAreas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void rowOfTiles();
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

    QWidget *at(int index) { return ui()->hl_unlimit->itemAt(index)->widget(); }

    /// The row up to its spacer: the tiles' texts, "+" for the add button, "-" if it is hidden.
    QString row()
    {
        QStringList texts;
        for (int i = 0; i < ui()->hl_unlimit->count() - 1; ++i) {
            const auto *label = at(i)->findChild<QLabel *>();
            texts << (label ? label->text() : at(i)->isHidden() ? "-" : "+");
        }
        return texts.join(' ');
    }

    /// A mouse that goes to the place and, if asked to, clicks; the button finds itself.
    void mouse(QWidget *target, bool click = false)
    {
        const QPoint place = target->mapTo(&window, target->rect().center());
        QCursor::setPos(window.mapToGlobal(place));
        QCoreApplication::processEvents();
        if (click)
            QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place);
    }

    void remove(int index)
    {
        QTRY_VERIFY(at(index)->isVisible());
        auto *const button = at(index)->findChild<QPushButton *>("delete");
        QCOMPARE(at(index)->width(), 91);
        QCOMPARE(button->geometry(), QRect(91 - 12 - 5, 5, 12, 12));
        for (int i = 0; i < 4; ++i) { // out, in, out, in
            mouse(i % 2 == 0 ? ui()->frame_title : at(index));
            QCOMPARE(button->isVisible(), i % 2 == 1);
        }
        mouse(button, true);
    }
};

} // namespace

// Tiles in front of the add button, as many as the order has digits; deleted in that order.
void TestAreas::rowOfTiles()
{
    for (const QByteArray order : {"10", "000", "110", "200", "210"}) {
        AreaPanel area;
        QStringList expected("+");
        for (int i = 0; i < order.size(); ++i) {
            area.panel->insertUnLimitArea(-30 - i, 30);
            expected.insert(i, QString("%1°/30°").arg(-30 - i));
            expected.last() = i < 2 ? '+' : '-';
            QCOMPARE(area.row(), expected.join(' '));
        }
        for (const char digit : order) {
            area.remove(digit - '0');
            expected.removeAt(digit - '0');
            expected.last() = '+';
            QCOMPARE(area.row(), expected.join(' '));
        }
        QCOMPARE(area.host.takeSent(), QStringList());
    }
}

void TestAreas::table()
{
    // The count, the table's bytes, and the count that is left; -1: the table is left alone.
    const std::tuple<float, int, int> rows[] = {
        {3.F, 52, 2},  {2.9F, 36, 1}, // counts as 2, and for more there is no room
        {1.F, 52, 0},  {-1.F, 52, -1},    {4.F, 55, -1},
        {3.F, 51, -1}, {qQNaN(), 52, -1}, {1.F, 3, -1}}; // no room for the count itself
    for (const auto &[count, size, left] : rows) {
        AreaPanel area;
        QByteArray table(size, '\x11'); // no larger, so that a sanitizer sees its end
        memcpy(table.data(), &count, size_t(qMin(size, 4)));
        QByteArray expected = table;
        auto descriptor = QSharedPointer<M24_Extension>::create(
            M24_Extension{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x20}, quint8(size)});
        descriptor->payload = PanelInternals::payloadBuffer(*area.panel);
        descriptor->valueData = reinterpret_cast<quint8 *>(table.data());
        PanelInternals::areaTable(*area.panel) = descriptor;
        QByteArray sent;
        area.panel->commandChannel = [&sent](int, const QVariant &record) {
            const auto unit = record.value<ExtensionUnit>();
            sent = QByteArray(reinterpret_cast<const char *>(unit.data), int(unit.length));
            return QVariant();
        };
        area.panel->insertUnLimitArea(0, 100);
        area.remove(0);
        QByteArray command;
        if (left >= 0) {
            const auto newCount = float(left);
            memcpy(expected.data(), &newCount, 4);
            expected.replace(4 + 16 * left, 16, QByteArray(16, '\0'));
            command = QByteArray::fromHex("FF530520") + char(size) + expected;
        }
        QCOMPARE(sent.toHex(), command.leftJustified(command.isEmpty() ? 0 : 60, '\0').toHex());
        QCOMPARE(table.toHex(), expected.toHex());
    }
}

TEST_MAIN(TestAreas)
#include "tst_areas.moc"
