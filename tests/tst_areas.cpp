#include "support.h"

#include <QWindow>

/// The row of non-tracking areas; what its table does is left to the fuzzer's corpus.
class TestAreas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
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

TEST_MAIN(TestAreas)
#include "tst_areas.moc"
