#include "bglinelabel.h"
#include "objectscaling.h"
#include "qpressframe.h"
#include "support.h"

#include <QPainter>
#include <QSignalSpy>
#include <QToolButton>

/// Guide-line label, press frame and scaling.
class TestToolkit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void guides_data();
    void guides();
    void locationEntry_data();
    void locationEntry();
    void pressesAreDebounced();
    void pressFrameInUse();
    void scaledChild_data();
    void scaledChild();
    void scaledSelf();
    void scaledIconsAndTree();
};

namespace {

using Lines = QVector<QLine>;

struct Guide
{
    int location;
    Lines before;
    QRect square; // of the arc, if any
    int start, span;
    Lines after;
};

// For a label of 61 x 31, whose centre is (30, 15).
const Guide guideRows[] = {
    {0, {{37, 15, 61, 15}}, {30, 15, 14, 14}, 90, 90, {{30, 22, 30, 31}}},
    {1, {{0, 15, 5, 15}, {56, 15, 61, 15}}, {}, 0, 0, {}},
    {2, {{0, 15, 23, 15}}, {16, 15, 14, 14}, 0, 90, {{30, 22, 30, 31}}},
    {3, {{30, 0, 30, 5}, {30, 26, 30, 31}}, {}, 0, 0, {}},
    {4, {{30, 0, 30, 5}, {30, 26, 30, 31}}, {}, 0, 0, {}},
    {5, {{37, 15, 61, 15}}, {30, 1, 14, 14}, 180, 90, {{30, 0, 30, 8}}},
    {6, {{0, 15, 5, 15}, {56, 15, 61, 15}}, {}, 0, 0, {}},
    {7, {{0, 15, 23, 15}}, {16, 1, 14, 14}, 0, -90, {{30, 0, 30, 8}}},
    {12, {}, {}, 0, 0, {}},
};

QImage blank()
{
    QImage image(61, 31, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage expectedGuide(int location)
{
    QImage image = blank();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(QColor("#525760"), 1.0, Qt::CustomDashLine, Qt::SquareCap, Qt::BevelJoin);
    pen.setDashPattern({5, 2});
    painter.setPen(pen);
    for (const Guide &guide : guideRows) {
        if (guide.location != location)
            continue;
        painter.drawLines(guide.before);
        if (guide.span != 0)
            painter.drawArc(guide.square, guide.start * 16, guide.span * 16);
        painter.drawLines(guide.after);
    }
    return image;
}

QImage painted(QLabel &label)
{
    label.resize(61, 31);
    QImage image = blank();
    label.render(&image, {}, {}, {});
    return image;
}

} // namespace

void TestToolkit::guides_data()
{
    QTest::addColumn<int>("location");
    for (const Guide &guide : guideRows)
        QTest::newRow(qPrintable(QString::number(guide.location))) << guide.location;
    QTest::newRow("none set") << -1;
}

void TestToolkit::guides()
{
    QFETCH(int, location);
    BgLineLabel label(nullptr);
    if (location >= 0)
        label.setStyleSheet(QStringLiteral("location:%1;").arg(location));
    QCOMPARE(painted(label), expectedGuide(location));
    QVERIFY((painted(label) == blank()) == (location < 0 || location > 7));
}

void TestToolkit::locationEntry_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("applied");
    QTest::addColumn<int>("location");
    const QString block = "QLabel {\nmargin: 0px;\n}\n";
    const QString filler(1200, ' ');
    QTest::newRow("alone") << "location:3;"
                           << "" << 3;
    QTest::newRow("after a block") << block + "location:4;" << block << 4;
    QTest::newRow("before a block") << "location:5;" + block << block << 5;
    QTest::newRow("none") << block << block << -1;
    QTest::newRow("spaces") << "location:  7 \n;"
                            << "" << 7;
    QTest::newRow("no number") << "location:x;"
                               << "" << 0;
    QTest::newRow("inside a word") << "/*relocation:2;*/"
                                   << "/*re*/" << 2;
    QTest::newRow("no end") << "/*location:6"
                            << "/*on:6" << 6;
    QTest::newRow("long tail") << "location:1;" + filler << filler.left(1000 - 5) << 1;
}

void TestToolkit::locationEntry()
{
    QFETCH(QString, given);
    QFETCH(int, location);
    BgLineLabel label(nullptr);
    label.setStyleSheet(given);
    QTEST(label.styleSheet(), "applied");
    QCOMPARE(painted(label), expectedGuide(location));
    label.setStyleSheet("");
    QCOMPARE(painted(label), expectedGuide(location));
}

// The interval is one of wall-clock time, so the waits are real.
void TestToolkit::pressesAreDebounced()
{
    QPressFrame frame(nullptr);
    QSignalSpy clicks(&frame, &QPressFrame::clicked);
    QTest::mousePress(&frame, Qt::LeftButton);
    QCOMPARE(clicks.count(), 1);
    for (int i = 0; i < 4; ++i) {
        QThread::msleep(60);
        QTest::mousePress(&frame, Qt::LeftButton);
    }
    QCOMPARE(clicks.count(), 1);
    QThread::msleep(120);
    QTest::mousePress(&frame, Qt::RightButton);
    QThread::msleep(120); // 240 ms after the last left press
    QTest::mousePress(&frame, Qt::LeftButton);
    QCOMPARE(clicks.count(), 2);
}

void TestToolkit::pressFrameInUse()
{
    QPointer<QPressFrame> frame(new QPressFrame(nullptr));
    QSignalSpy hovers(frame, &QPressFrame::hoverEvent);
    QEvent enter(QEvent::Enter);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(frame, &enter);
    QCoreApplication::sendEvent(frame, &leave);
    QCOMPARE(hovers, (QList<QVariantList>{{true}, {false}}));

    frame->resize(20, 20);
    frame->setFrameStyle(QFrame::Box | QFrame::Plain);
    frame->setLineWidth(3);
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::green);
    frame->render(&image, {}, {}, {});
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::green));

    connect(frame, &QPressFrame::clicked, this, [&] { delete frame; });
    QTest::mousePress(frame, Qt::LeftButton);
    QVERIFY(!frame);
}

void TestToolkit::scaledChild_data()
{
    QTest::addColumn<QSize>("min");
    QTest::addColumn<QSize>("max");
    QTest::addColumn<QRect>("before");
    QTest::addColumn<QSize>("minAfter");
    QTest::addColumn<QSize>("maxAfter");
    QTest::addColumn<QRect>("after");
    const QSize none(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    QTest::newRow("unlimited") << QSize() << none << QRect(10, 21, 33, 20) << QSize(0, 0) << none
                               << QRect(15, 32, 50, 30);
    QTest::newRow("grown by its minimum") << QSize(0, 15) << none << QRect(10, 21, 33, 15)
                                          << QSize(0, 23) << none << QRect(15, 32, 50, 35);
    QTest::newRow("fixed") << QSize(20, 20) << QSize(20, 20) << QRect(-3, 0, 20, 20)
                           << QSize(30, 30) << QSize(30, 30) << QRect(-5, 0, 30, 30);
}

void TestToolkit::scaledChild()
{
    QFETCH(QSize, min);
    QFETCH(QSize, max);
    QFETCH(QRect, before);
    QWidget window;
    auto *const child = new QWidget(&window);
    if (min.isValid())
        child->setMinimumSize(min);
    child->setMaximumSize(max);
    child->setGeometry(before);
    Talsen::updateObjectSize(window, 1.5, 0);
    QTEST(child->minimumSize(), "minAfter");
    QTEST(child->maximumSize(), "maxAfter");
    QTEST(child->geometry(), "after");
}

void TestToolkit::scaledSelf()
{
    QWidget window;
    QWidget self(&window);
    self.setGeometry(10, 21, 33, 20);
    Talsen::updateObjectSize(self, 1.5, 0);
    QCOMPARE(self.geometry(), QRect(10, 21, 33, 20));
    Warnings::expected = QRegularExpression("The largest allowed size is");
    Talsen::updateObjectSize(self, 1.5, 1);
    QCOMPARE(self.geometry(), QRect(15, 31, 49, 30));
    QCOMPARE(self.minimumSize(), QSize(0, 0));
    QCOMPARE(self.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

namespace {

class OwnButton : public QPushButton
{
    Q_OBJECT
    using QPushButton::QPushButton;
};

class LoadingButton : public QToolButton
{
    Q_OBJECT
    using QToolButton::QToolButton;
};

} // namespace

void TestToolkit::scaledIconsAndTree()
{
    QWidget window;
    auto *const row = new QWidget(&window);
    const QList<QAbstractButton *> scaled = {new QPushButton(row), new QToolButton(row),
                                             new LoadingButton(row)};
    auto *const own = new OwnButton(row);
    auto *const unreached = new QObject(&window);
    for (QAbstractButton *button : scaled)
        button->setIconSize(QSize(16, 16));
    own->setIconSize(QSize(16, 16));
    auto *const deep = new QWidget(own);
    deep->setGeometry(1, 2, 3, 4);
    Talsen::changeObjectSizeInner(window, 1.5);
    for (QAbstractButton *button : scaled)
        QCOMPARE(button->iconSize(), QSize(24, 24));
    QCOMPARE(own->iconSize(), QSize(16, 16));
    QCOMPARE(deep->geometry(), QRect(2, 3, 5, 6));
    Talsen::updateObjectSize(*unreached, 1.5, 1); // no widget: nothing to do
}

TEST_MAIN(TestToolkit)
#include "tst_toolkit.moc"
