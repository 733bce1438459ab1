#include "areatile.h"
#include "bglinelabel.h"
#include "objectscaling.h"
#include "pixmapdisplay.h"
#include "qpressframe.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QBoxLayout>
#include <QCommandLinkButton>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QToolButton>

/// Guide-line label, press frame, area tile and scaling.
class TestToolkit : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void guideLines_data();
    void guideLines();
    void presses_data();
    void presses();
    void pressFrame();
    void areaTile();
    void scaling();
    void scaledIconsAndTree();
};

namespace {

/// For a label of 61 x 31, whose centre is (30, 15): a line, an arc if there is one, by its square
/// and start, and another line.
struct Guide
{
    QLine before;
    QRect square;
    int start;
    QLine after;
};

const Guide guides[] = {{{37, 15, 61, 15}, {30, 15, 14, 14}, 90, {30, 22, 30, 31}},
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
        const Guide &guide = guides[location];
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        QPen pen(QColor("#525760"), 1.0, Qt::CustomDashLine, Qt::SquareCap, Qt::BevelJoin);
        pen.setDashPattern({5, 2});
        painter.setPen(pen);
        painter.drawLine(guide.before);
        if (!guide.square.isNull())
            painter.drawArc(guide.square, guide.start * 16, (location == 7 ? -90 : 90) * 16);
        painter.drawLine(guide.after);
    }
    label.setText("30°");
    label.resize(image.size());
    label.render(&image, {}, {}, {});
    return image;
}

/// Counts the presses that reach it.
struct Parent : QWidget
{
    int presses = 0;
    void mousePressEvent(QMouseEvent * /*event*/) override { ++presses; }
};

template <typename Clickable, typename Signal>
QString clicksOf(Clickable *widget, Signal clicked, Parent &parent)
{
    using namespace std::chrono_literals;
    widget->setParent(&parent);
    const QPointer<Clickable> alive(widget);
    QSignalSpy clicks(widget, clicked);
    QString counted;
    const auto press = [&](std::chrono::milliseconds after, Qt::MouseButton button) {
        VirtualTime::now += after;
        const int before = clicks.count();
        QMouseEvent event(QEvent::MouseButtonPress, QPointF(), button, button, {});
        QCoreApplication::sendEvent(widget, &event);
        counted += clicks.count() > before ? 'c' : '.';
    };
    press(0ms, Qt::LeftButton);
    press(150ms, Qt::LeftButton); // also one that is dropped holds the next ones back
    press(199ms, Qt::LeftButton);
    press(100ms, Qt::RightButton);
    press(100ms, Qt::LeftButton); // 200 ms after the last left press
    press(-5000ms, Qt::LeftButton);
    press(200ms, Qt::LeftButton);
    counted += QString(" parent %1").arg(parent.presses);
    QObject::connect(widget, clicked, [widget] { delete widget; });
    press(200ms, Qt::LeftButton);
    return counted + (alive ? "" : " deleted");
}

} // namespace

void TestToolkit::guideLines_data()
{
    QTest::addColumn<int>("location");
    const char *const names[] = {"top left",    "top",    "top right",    "left", "right",
                                 "bottom left", "bottom", "bottom right", "none"};
    for (int location = 0; location < 9; ++location)
        QTest::newRow(names[location]) << location;
}

void TestToolkit::guideLines()
{
    QFETCH(int, location);
    QLabel plain;
    BgLineLabel label(nullptr);
    label.setStyleSheet(QString("location:%1;").arg(location));
    QVERIFY(painted(label) == painted(plain, location));
}

void TestToolkit::presses_data()
{
    QTest::addColumn<bool>("frame");
    QTest::newRow("press frame") << true;
    QTest::newRow("picture display") << false;
}

void TestToolkit::presses()
{
    VirtualTime::start();
    QFETCH(bool, frame);
    Parent parent;
    const QString clicks = frame ? clicksOf(new QPressFrame(nullptr), &QPressFrame::clicked, parent)
                                 : clicksOf(new PixmapDisplay, &PixmapDisplay::onClick, parent);
    QCOMPARE(clicks, "c...c.c parent 7c deleted");
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

void TestToolkit::areaTile()
{
    QWidget frame;
    auto *const row = new QHBoxLayout(&frame);
    QPushButton add;
    add.resize(91, 35);
    add.setMaximumWidth(91);
    row->addWidget(&add);
    row->addStretch();
    frame.show();
    const AreaTile tile = insertAreaTile(*row, add, -30, 30);
    tile.frame->resize(91, 35);
    QImage image(91, 35, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    tile.frame->render(&image, {}, {}, QWidget::DrawChildren);
    const QColor ground("#282B30");
    QCOMPARE(image.pixelColor(45, 1), ground);
    QVERIFY(image.pixelColor(0, 0).alpha() < 255); // the corner is round
    // The text is in the middle.
    QRect text;
    for (int i = 0; i < image.width() * image.height(); ++i) {
        const QPoint pixel(i % image.width(), i / image.width());
        if (QRect(5, 5, 81, 25).contains(pixel) && image.pixelColor(pixel) != ground)
            text |= QRect(pixel, QSize(1, 1));
    }
    QVERIFY((text.center() - image.rect().center()).manhattanLength() < 5);
    QCOMPARE(tile.deleteButton->geometry(), QRect(91 - 12 - 5, 5, 12, 12));
    QVERIFY(tile.deleteButton->isHidden());
    QVERIFY(tile.deleteButton->styleSheet().contains("QPushButton:hover {"));
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
    expectedWarnings.setPattern("The largest allowed size is");
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
    for (QAbstractButton *button : buttons)
        QCOMPARE(button->iconSize(), button == buttons.last() ? QSize(16, 10) : QSize(24, 15));
    QCOMPARE(deep.geometry(), QRect(2, 3, 5, 6));
}

TEST_MAIN(TestToolkit)
#include "tst_toolkit.moc"
