#include "hostedpanel.h"
#include "testmain.h"

#include <QWindow>

/// The row of non-tracking areas; what its table does is left to the fuzzer's corpus.
class TestAreas : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void rowOfTiles_data();
    void rowOfTiles();
};

namespace {

/// A panel with its area row in sight, which nothing but a driver to come would show.
struct AreaPanel : HostedPanel
{
    AreaPanel()
    {
        host.status = QByteArray::fromHex("0001000100");
        insertAndShow();
        ui().frame_limit_setting_spliter->show();
    }

    QWidget *at(int index) { return ui().hl_unlimit->itemAt(index)->widget(); }

    /// The row up to its spacer: the tiles' texts, with a star if the delete button shows; "+" for
    /// the add button, "-" if it is hidden.
    QString row()
    {
        QStringList texts;
        for (int i = 0; i < ui().hl_unlimit->count() - 1; ++i) {
            const auto *label = at(i)->findChild<QLabel *>();
            const auto *button = at(i)->findChild<QPushButton *>("delete");
            texts << (label ? label->text() : at(i)->isHidden() ? "-" : "+");
            texts.last() += button && button->isVisible() ? "*" : "";
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
};

} // namespace

// The tiles of a row are deleted in this order.
void TestAreas::rowOfTiles_data()
{
    QTest::addColumn<QByteArray>("order");
    for (const char *order : {"10", "000", "110", "200", "210"})
        QTest::newRow(order) << QByteArray(order);
}

void TestAreas::rowOfTiles()
{
    QFETCH(QByteArray, order);
    AreaPanel area;
    QTest::qWait(150); // past the slides of set-up, and until the window is on the screen
    area.host.takeSent();
    QStringList expected("+");
    for (int i = 0; i < order.size(); ++i) {
        area.panel->insertUnLimitArea(-30 - i, 30);
        expected.insert(i, QString("%1°/30°").arg(-30 - i));
        expected.last() = i < 2 ? '+' : '-';
        QCOMPARE(area.row(), expected.join(' '));
    }
    for (const char digit : order) {
        const int index = digit - '0';
        QWidget *const tile = area.at(index);
        QTRY_VERIFY(tile->isVisible());
        QCOMPARE(tile->width(), 91);
        area.mouse(tile);
        QStringList hovered = expected;
        hovered[index] += '*';
        QCOMPARE(area.row(), hovered.join(' '));
        area.mouse(area.ui().frame_title);
        QCOMPARE(area.row(), expected.join(' '));
        area.mouse(tile);
        area.mouse(tile->findChild<QPushButton *>("delete"), true);
        expected.removeAt(index);
        expected.last() = '+';
        QCOMPARE(area.row().remove('*'), expected.join(' '));
    }
    QCOMPARE(area.host.takeSent(), QStringList());
}

TEST_MAIN(TestAreas)
#include "tst_areas.moc"
