#include "bglinelabel.h"
#include "objectscaling.h"
#include "pixmapdisplay.h"
#include "qpressframe.h"
#include "support.h"

#include <QCommandLinkButton>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QThread>
#include <QToolButton>

/// Guide-line label, press frame and scaling.
class TestToolkit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void guideLines();
    void pressesAreDebounced();
    void pressFrame();
    void scaling();
    void scaledIconsAndTree();
};

namespace {

/// For a label of 61 x 31, whose centre is (30, 15): a line, an arc if there is one, by its square
/// and start, and another line.
const std::tuple<QLine, QRect, int, QLine> guides[] = {
    {{37, 15, 61, 15}, {30, 15, 14, 14}, 90, {30, 22, 30, 31}},
    {{0, 15, 5, 15}, {}, 0, {56, 15, 61, 15}},
    {{0, 15, 23, 15}, {16, 15, 14, 14}, 0, {30, 22, 30, 31}},
    {{30, 0, 30, 5}, {}, 0, {30, 26, 30, 31}},
    {{30, 0, 30, 5}, {}, 0, {30, 26, 30, 31}},
    {{37, 15, 61, 15}, {30, 1, 14, 14}, 180, {30, 0, 30, 8}},
    {{0, 15, 5, 15}, {}, 0, {56, 15, 61, 15}},
    {{0, 15, 23, 15}, {16, 1, 14, 14}, 0, {30, 0, 30, 8}}};

/// The label and its text, over a guide that is painted here.
QImage painted(QLabel &label, int location = 8)
{
    QImage image(61, 31, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (location < 8) {
        const auto &[before, square, start, after] = guides[location];
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        QPen pen(QColor("#525760"), 1.0, Qt::CustomDashLine, Qt::SquareCap, Qt::BevelJoin);
        pen.setDashPattern({5, 2});
        painter.setPen(pen);
        painter.drawLine(before);
        if (!square.isNull())
            painter.drawArc(square, start * 16, (location == 7 ? -90 : 90) * 16);
        painter.drawLine(after);
    }
    label.setText("30°");
    label.resize(image.size());
    label.render(&image, {}, {}, {});
    return image;
}

template <typename Clickable, typename Signal>
void press(Clickable *widget, Signal clicked)
{
    QPointer<Clickable> alive(widget);
    QSignalSpy clicks(widget, clicked);
    // Each press, also one that is dropped, holds the next ones back.
    for (int i = 0; i < 5; ++i) {
        QTest::mousePress(widget, Qt::LeftButton);
        QThread::msleep(60);
    }
    QCOMPARE(clicks.count(), 1);
    QThread::msleep(60);
    QTest::mousePress(widget, Qt::RightButton);
    QThread::msleep(120); // 240 ms after the last left press
    QObject::connect(widget, clicked, [widget] { delete widget; });
    QMouseEvent left(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(widget, &left);
    QCOMPARE(clicks.count(), 2);
    QVERIFY(!alive);
}

} // namespace

void TestToolkit::guideLines()
{
    for (int location = 0; location < 9; ++location) {
        QLabel plain;
        BgLineLabel label(nullptr);
        label.setStyleSheet(QString("location:%1;").arg(location));
        QVERIFY2(painted(label) == painted(plain, location), qPrintable(QString::number(location)));
    }
}

// The interval is one of wall-clock time, so the waits are real.
void TestToolkit::pressesAreDebounced()
{
    press(new QPressFrame(nullptr), &QPressFrame::clicked);
    press(new PixmapDisplay, &PixmapDisplay::onClick);
}

void TestToolkit::pressFrame()
{
    QPressFrame frame(nullptr);
    QSignalSpy hovers(&frame, &QPressFrame::hoverEvent);
    for (const auto type : {QEvent::Enter, QEvent::Leave}) {
        QEvent event(type);
        QCoreApplication::sendEvent(&frame, &event);
    }
    QCOMPARE(hovers, (QList<QVariantList>{{true}, {false}}));
    frame.setFrameStyle(QFrame::Box | QFrame::Plain); // of which nothing is drawn
    QCOMPARE(frame.grab().toImage().pixelColor(0, 0), frame.palette().color(QPalette::Window));
}

void TestToolkit::scaling()
{
    QWidget window;
    QWidget child(&window);
    const auto scaled = [&](QSize min, QSize max, QRect place, QObject &what, int self) {
        child.setMinimumSize(min);
        child.setMaximumSize(max);
        child.setGeometry(place);
        Talsen::updateObjectSize(what, 1.5, self);
        return std::make_tuple(child.minimumSize(), child.maximumSize(), child.geometry());
    };
    const QSize any(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    const QRect place(10, 21, 33, 20);
    const auto as = [](QSize min, QSize max, QRect rect) {
        return std::make_tuple(min, max, rect);
    };
    QCOMPARE(scaled({0, 0}, any, place, window, 0), as({0, 0}, any, {15, 32, 50, 30}));
    // Its minimum grows first, and the widget with it.
    QCOMPARE(scaled({0, 20}, any, place, window, 0), as({0, 30}, any, {15, 32, 50, 45}));
    QCOMPARE(scaled({20, 10}, {20, 10}, {-3, 0, 20, 10}, window, 0),
             as({30, 15}, {30, 15}, {-5, 0, 30, 15}));
    // A widget itself only if asked to, and cut down to whole pixels.
    QCOMPARE(scaled({0, 0}, any, place, child, 0), as({0, 0}, any, place));
    Warnings::expected = QRegularExpression("The largest allowed size is");
    QCOMPARE(scaled({3, 5}, any, place, child, 1), as({5, 8}, any, {15, 31, 49, 30}));
    QObject noWidget;
    Talsen::updateObjectSize(noWidget, 1.5, 1);
}

class LoadingButton : public QToolButton
{
    Q_OBJECT
    using QToolButton::QToolButton;
};

void TestToolkit::scaledIconsAndTree()
{
    QWidget window;
    auto *const row = new QWidget(&window);
    const QList<QAbstractButton *> buttons = {new QPushButton(row), new QToolButton(row),
                                              new LoadingButton(row), new QCommandLinkButton(row)};
    for (QAbstractButton *button : buttons)
        button->setIconSize(QSize(16, 10));
    QWidget deep(buttons.last());
    deep.setGeometry(1, 2, 3, 4);
    Talsen::changeObjectSizeInner(window, 1.5);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(buttons.at(i)->iconSize(), i < 3 ? QSize(24, 15) : QSize(16, 10));
    QCOMPARE(deep.geometry(), QRect(2, 3, 5, 6));
}

TEST_MAIN(TestToolkit)
#include "tst_toolkit.moc"
