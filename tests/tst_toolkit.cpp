#include "areatile.h"
#include "bglinelabel.h"
#include "objectscaling.h"
#include "pixmapdisplay.h"
#include "qpressframe.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QBoxLayout>
#include <QCommandLinkButton>
#include <QIcon>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QToolButton>

namespace {

/// Of a label of 61 x 31, whose centre is (30, 15): lines, and the square of an arc between them.
struct Guide
{
    const char *name;
    QVector<QLine> lines;
    QRect square;
    int start, span; // in degrees
};

// In the order of the locations.
const Guide guides[] = {
    {"top left", {{37, 15, 61, 15}, {30, 22, 30, 31}}, {30, 15, 14, 14}, 90, 90},
    {"top", {{0, 15, 5, 15}, {56, 15, 61, 15}}, {}, 0, 0},
    {"top right", {{0, 15, 23, 15}, {30, 22, 30, 31}}, {16, 15, 14, 14}, 0, 90},
    {"left", {{30, 0, 30, 5}, {30, 26, 30, 31}}, {}, 0, 0},
    {"right", {{30, 0, 30, 5}, {30, 26, 30, 31}}, {}, 0, 0},
    {"bottom left", {{37, 15, 61, 15}, {30, 0, 30, 8}}, {30, 1, 14, 14}, 180, 90},
    {"bottom", {{0, 15, 5, 15}, {56, 15, 61, 15}}, {}, 0, 0},
    {"bottom right", {{0, 15, 23, 15}, {30, 0, 30, 8}}, {16, 1, 14, 14}, 0, -90},
    {"none", {}, {}, 0, 0}};

QImage rendered(QWidget &widget, QImage image, QWidget::RenderFlags flags = {})
{
    widget.resize(image.size());
    widget.render(&image, {}, {}, flags);
    return image;
}

QImage emptyImage(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// What presses do, in words; the receiver of the last deletes the widget.
template <typename Clickable, typename Signal>
QString clicksOf(Clickable *widget, Signal clicked)
{
    struct Parent : QWidget
    {
        int presses = 0;
        void mousePressEvent(QMouseEvent * /*event*/) override { ++presses; }
    } parent;
    widget->setParent(&parent);
    const QPointer<Clickable> alive(widget);
    QSignalSpy clicks(widget, clicked);
    QString counted;
    const auto press = [&](int after, Qt::MouseButton button = Qt::LeftButton) {
        VirtualTime::now += std::chrono::milliseconds(after);
        const int before = clicks.count();
        QMouseEvent event(QEvent::MouseButtonPress, QPointF(), button, button, {});
        QCoreApplication::sendEvent(widget, &event);
        counted += clicks.count() > before ? 'c' : '.';
    };
    for (const int after : {0, 150, 199}) // also one that is dropped holds the next ones back
        press(after);
    press(100, Qt::RightButton);
    for (const int after : {100, -5000, 200}) // at first 200 ms after the last left press
        press(after);
    QObject::connect(widget, clicked, [widget] { delete widget; });
    press(200);
    return counted + QString(" parent %1").arg(parent.presses) + (alive ? "" : " deleted");
}

class LoadingButton : public QToolButton
{
    Q_OBJECT
    using QToolButton::QToolButton;
};

} // namespace

/// Guide-line label, press frame, area tile and scaling.
class TestToolkit : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void guideLines_data()
    {
        QTest::addColumn<int>("location");
        for (const Guide &guide : guides)
            QTest::newRow(guide.name) << int(&guide - guides);
    }

    void guideLines()
    {
        QFETCH(int, location);
        const Guide &guide = guides[location];
        QImage wanted = emptyImage(61, 31);
        QPainter painter(&wanted);
        painter.setRenderHint(QPainter::Antialiasing);
        QPen pen(QColor(0x525760), 1.0, Qt::CustomDashLine, Qt::SquareCap, Qt::BevelJoin);
        pen.setDashPattern({5, 2});
        painter.setPen(pen);
        for (int i = 0; i < guide.lines.size(); ++i) {
            painter.drawLine(guide.lines[i]);
            if (i == 0 && guide.span != 0)
                painter.drawArc(guide.square, guide.start * 16, guide.span * 16);
        }
        painter.end();
        QLabel plain("30°"); // over the guide
        BgLineLabel label(nullptr);
        label.setText(plain.text());
        label.setStyleSheet(QString("location:%1;").arg(location));
        QCOMPARE(rendered(label, emptyImage(61, 31)), rendered(plain, wanted));
    }

    void presses()
    {
        VirtualTime::start();
        const QString due("c...c.cc parent 7 deleted");
        QCOMPARE(clicksOf(new QPressFrame(nullptr), &QPressFrame::clicked), due);
        QCOMPARE(clicksOf(new PixmapDisplay, &PixmapDisplay::onClick), due);
    }

    void pressFrame()
    {
        QPressFrame frame(nullptr);
        frame.setFrameStyle(QFrame::Box | QFrame::Plain); // of which nothing is drawn
        QCOMPARE(frame.grab().toImage().pixelColor(0, 0), frame.palette().color(QPalette::Window));
    }

    void areaTile()
    {
        QWidget window;
        auto *const row = new QHBoxLayout(&window);
        QPushButton add(&window);
        add.setFixedSize(91, 35);
        row->addWidget(&add);
        row->addStretch();
        const AreaTile tile = insertAreaTile(*row, add, -30, 30);
        window.show();
        QCOMPARE(tile.frame->width(), 91);

        QImage wanted = emptyImage(91, 35);
        QPainter painter(&wanted);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x282B30));
        painter.drawRoundedRect(wanted.rect(), 5, 5);
        painter.drawRoundedRect(wanted.rect(), 5, 5); // of the label, a frame too
        painter.setPen(QColor::fromRgba(0x99CECEDA));
        QFont font;
        font.setPointSize(9);
        painter.setFont(font);
        painter.drawText(wanted.rect(), Qt::AlignCenter, "-30°/30°");
        QCOMPARE(rendered(*tile.frame, emptyImage(91, 35), QWidget::DrawChildren), wanted);

        QCOMPARE(tile.deleteButton->geometry(), QRect(74, 5, 12, 12));
        tile.deleteButton->show();
        const auto isDrawn = [&](const char *colour) { // of the disc behind the cross
            const QImage image = rendered(*tile.deleteButton, emptyImage(12, 12));
            return image.pixelColor(2, 6) == QColor(colour);
        };
        QVERIFY(isDrawn("#3A3F46"));
        tile.deleteButton->setAttribute(Qt::WA_UnderMouse);
        QMouseEvent move(QEvent::MouseMove, {6, 6}, Qt::NoButton, {}, {});
        QCoreApplication::sendEvent(tile.deleteButton, &move);
        QVERIFY(isDrawn("#E60033"));
    }

    void scaling()
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
        using Sizes = std::tuple<QSize, QSize, QRect>;
        // The minimum grows first, and the widget with it.
        QCOMPARE(scaled({0, 20}, any, place, window, 0), Sizes({0, 30}, any, {15, 32, 50, 45}));
        QCOMPARE(scaled({20, 10}, {20, 10}, {-3, 0, 20, 10}, window, 0),
                 Sizes({30, 15}, {30, 15}, {-5, 0, 30, 15}));
        // A widget itself only if asked to, and cut down to whole pixels.
        QCOMPARE(scaled({0, 0}, any, place, child, 0), Sizes({0, 0}, any, place));
        expectedWarnings.setPattern("The largest allowed size is");
        QCOMPARE(scaled({3, 5}, any, place, child, 1), Sizes({5, 8}, any, {15, 31, 49, 30}));
        QObject noWidget;
        Talsen::updateObjectSize(noWidget, 1.5, 1);
    }

    void scaledIconsAndTree()
    {
        QWidget window;
        auto *const row = new QWidget(&window);
        const QList<QAbstractButton *> buttons = {new QPushButton(row), new QToolButton(row),
                                                  new LoadingButton(row),
                                                  new QCommandLinkButton(row)};
        for (QAbstractButton *button : buttons)
            button->setIconSize(QSize(16, 10));
        QWidget deep(buttons.last());
        deep.setGeometry(1, 2, 3, 4);
        Talsen::changeObjectSizeInner(window, 1.5);
        QList<int> widths;
        for (QAbstractButton *button : buttons)
            widths << button->iconSize().width();
        QCOMPARE(widths, (QList<int>{24, 24, 24, 16}));
        QCOMPARE(buttons[0]->iconSize().height(), 15);
        QCOMPARE(deep.geometry(), QRect(2, 3, 5, 6));
    }
};

TEST_MAIN(TestToolkit)
#include "tst_toolkit.moc"
