#include "areatile.h"
#include "bglinelabel.h"
#include "objectscaling.h"
#include "pixmapdisplay.h"
#include "pixmaputils.h"
#include "qpressframe.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QBoxLayout>
#include <QCommandLinkButton>
#include <QFile>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>

namespace {

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

/// The effect of presses: 'c' a click, '.' none, 'a' accepted. The last click deletes the widget.
template <typename Clickable, typename Signal>
QString clicksOf(Clickable *widget, Signal clicked)
{
    const QPointer<Clickable> alive(widget);
    QSignalSpy clicks(widget, clicked);
    QString counted;
    const auto press = [&](int after, Qt::MouseButton button = Qt::LeftButton) {
        VirtualTime::now += std::chrono::milliseconds(after);
        const int before = clicks.count();
        QMouseEvent event(QEvent::MouseButtonPress, QPointF(), button, button, {});
        QCoreApplication::sendEvent(widget, &event);
        counted += clicks.count() > before ? 'c' : '.';
        counted += event.isAccepted() ? "a" : "";
    };
    for (const int after : {0, 150, 199}) // an ignored press starts the interval, too
        press(after);
    press(100, Qt::RightButton);
    for (const int after : {100, -5000, 200}) // the first is 200 ms after the last left press
        press(after);
    QObject::connect(widget, clicked, [widget] { delete widget; });
    press(200);
    return counted + (alive ? "" : " deleted");
}

class LoadingButton : public QToolButton
{
    Q_OBJECT
    using QToolButton::QToolButton;
};

} // namespace

/// Guide-line label, press frame, area tile, scaling, and pixmap functions.
class TestToolkit : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void picksColor()
    {
        QWidget window(nullptr, Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
        window.setStyleSheet("background: rgb(12, 34, 56)");
        window.setGeometry(100, 100, 50, 50);
        window.show();
        int rgb[] = {-1, -1, -1};
        QCursor::setPos(120, 120);
        QTRY_VERIFY(pickScreenColor(rgb) && rgb[0] == 12 && rgb[1] == 34 && rgb[2] == 56);
        if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
            QCursor::setPos(20, 20); // this platform has no pixels outside windows
            QVERIFY(!pickScreenColor(rgb));
            QCOMPARE(rgb[0], 12);
        }
    }

    void pictureFiles()
    {
        static const char svg[] = "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'>"
                                  "<rect width='5' height='10' fill='#00ff00'/></svg>";
        static const char pbm[] = "P1\n2 1\n1 0\n";
        const struct
        {
            const char *name, *contents;
            QSize asked, got;
        } rows[] = {
            {"a.svg", svg, {40, 20}, {40, 20}}, {"A.SVG", "<svg", {6, 4}, {6, 4}},
            {"a.svg", svg, {0, 4}, {0, 0}},     {"a.png", svg, {0, 0}, {10, 10}},
            {"a.png", pbm, {0, 0}, {2, 1}},     {"a", pbm, {9, 9}, {18, 9}},
            {"a.jpg", pbm, {0, 9}, {0, 0}},     {"a.gif", "", {5, 5}, {0, 0}},
        };
        expectedWarnings.setPattern("Premature end of document"); // of "<svg"
        const QTemporaryDir folder;
        const QString missing = folder.filePath("a.png");
        QTest::ignoreMessage(QtDebugMsg, qPrintable("can not read file :  \"" + missing + '"'));
        QVERIFY(loadPixmapAutoFormat(missing, QSize(9, 9), false).isNull()); // and not cached
        for (const auto &[name, contents, asked, got] : rows) {
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(contents);
            file.close();
            const QPixmap picture = loadPixmapAutoFormat(file.fileName(), asked, false);
            QVERIFY2(picture.size() == got, name);
            if (got == QSize(40, 20)) {
                QCOMPARE(picture.toImage().pixelColor(10, 10), QColor(Qt::green));
                QCOMPARE(picture.toImage().pixelColor(30, 10), QColor(Qt::transparent));
            }
            QVERIFY(file.remove()); // so the next one comes from the cache
            QCOMPARE(loadPixmapAutoFormat(file.fileName(), {7, 7}, true).cacheKey(),
                     picture.cacheKey());
            removePixmapCache(file.fileName());
        }
    }

    // A label that had location 0 before.
    void styleSheets()
    {
        const QString spaces(1000, ' ');
        const struct
        {
            QString sheet, rest;
            int location;
        } rows[] = {
            {"location:3;", "", 3},
            {"QLabel { color: red; }", "QLabel { color: red; }", 0},
            {"QLabel { color: red; }\nlocation:4;", "QLabel { color: red; }\n", 4},
            {"location :  7  ; color: blue", " color: blue", 7},
            {"allocation:2;relocation:5;", "alrelocation:5;", 2},
            {"location:x;", "", 0},
            {"location:-1;", "", -1},
            {"location:12;color: red", "color: red", -1},
            {"location:99999999999;", "", 0},
            {"location 6", "on 6", 0},
            {"location;6:5", "6:5", 5},
            {"location:6", "on:6", 6},
            {"location:" + spaces + "5;", "on:" + spaces.left(997), 0},
            {"location:5;" + spaces, spaces.left(995), 5},
        };
        for (const auto &[sheet, rest, location] : rows) {
            expectedWarnings.setPattern("Could not parse stylesheet|Unknown property");
            BgLineLabel label(nullptr);
            label.setStyleSheet("location:0;");
            label.setStyleSheet(sheet);
            QCOMPARE(label.styleSheet(), rest);
            BgLineLabel reference(nullptr);
            reference.setStyleSheet(QString("location:%1;").arg(location));
            QVERIFY2(rendered(label, emptyImage(61, 31)) == rendered(reference, emptyImage(61, 31)),
                     qPrintable(sheet));
        }
    }

    // By location: lines, and the square of the arc between them. The label is 61 x 31.
    void guideLines()
    {
        const QVector<QLine> across{{0, 15, 5, 15}, {56, 15, 61, 15}};
        const QVector<QLine> down{{30, 0, 30, 5}, {30, 26, 30, 31}};
        const struct
        {
            QVector<QLine> lines;
            QRect square = {};
            int start = 0, span = 0; // in degrees
        } guides[] = {
            {{{37, 15, 61, 15}, {30, 22, 30, 31}}, {30, 15, 14, 14}, 90, 90}, // top left
            {across},
            {{{0, 15, 23, 15}, {30, 22, 30, 31}}, {16, 15, 14, 14}, 0, 90}, // top right
            {down},
            {down},
            {{{37, 15, 61, 15}, {30, 0, 30, 8}}, {30, 1, 14, 14}, 180, 90}, // bottom left
            {across},
            {{{0, 15, 23, 15}, {30, 0, 30, 8}}, {16, 1, 14, 14}, 0, -90}, // bottom right
            {{}},
        };
        for (int location = 0; location < int(std::size(guides)); ++location) {
            const auto &[lines, square, start, span] = guides[location];
            QImage wanted = emptyImage(61, 31);
            QPainter painter(&wanted);
            painter.setRenderHint(QPainter::Antialiasing);
            QPen pen(QColor(0x525760), 1.0, Qt::CustomDashLine, Qt::SquareCap, Qt::BevelJoin);
            pen.setDashPattern({5, 2});
            painter.setPen(pen);
            painter.drawLines(lines.mid(0, 1));
            if (span != 0)
                painter.drawArc(square, start * 16, span * 16);
            painter.drawLines(lines.mid(1));
            painter.end();
            QLabel plain("30°"); // above the guide line
            BgLineLabel label(nullptr);
            label.setText(plain.text());
            label.setStyleSheet(QString("location:%1;").arg(location));
            QCOMPARE(rendered(label, emptyImage(61, 31)), rendered(plain, wanted));
        }
    }

    void presses()
    {
        VirtualTime::start();
        const QString due("c...c.cca deleted");
        QCOMPARE(clicksOf(new QPressFrame(nullptr), &QPressFrame::clicked), due);
        QCOMPARE(clicksOf(new PixmapDisplay, &PixmapDisplay::onClick), due);
        QPressFrame frame(nullptr);
        frame.setFrameStyle(QFrame::Box | QFrame::Plain); // must not be drawn
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
        const auto [tile, button] = insertAreaTile(*row, add, -30, 30);
        window.show();
        QCOMPARE(tile->width(), 91);

        auto *const angles = tile->findChild<QLabel *>();
        QCOMPARE(angles->text(), "-30\u00b0/30\u00b0");
        QCOMPARE(angles->geometry(), QRect(0, 0, 91, 35));
        QCOMPARE(angles->font().pointSize(), 9);
        QCOMPARE(angles->palette().color(QPalette::WindowText), QColor::fromRgba(0x99CECEDA));
        const QImage image = rendered(*tile, emptyImage(91, 35), QWidget::DrawChildren);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::transparent));
        QCOMPARE(image.pixelColor(0, 17), QColor(0x282B30));
        QCOMPARE(button->geometry(), QRect(74, 5, 12, 12));
        button->show();
        // The disc behind the cross.
        QCOMPARE(rendered(*button, emptyImage(12, 12)).pixelColor(2, 6), QColor(0x3A3F46));
        button->setAttribute(Qt::WA_UnderMouse);
        QMouseEvent move(QEvent::MouseMove, {6, 6}, Qt::NoButton, {}, {});
        QCoreApplication::sendEvent(button, &move);
        QCOMPARE(rendered(*button, emptyImage(12, 12)).pixelColor(2, 6), QColor(0xE60033));
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
        // The minimum grows first and resizes the widget.
        QCOMPARE(scaled({0, 20}, any, place, window, 0), Sizes({0, 30}, any, {15, 32, 50, 45}));
        QCOMPARE(scaled({20, 10}, {20, 10}, {-3, 0, 20, 10}, window, 0),
                 Sizes({30, 15}, {30, 15}, {-5, 0, 30, 15}));
        // The widget itself: only if requested, and truncated.
        QCOMPARE(scaled({0, 0}, any, place, child, 0), Sizes({0, 0}, any, place));
        expectedWarnings.setPattern("The largest allowed size is");
        QCOMPARE(scaled({3, 5}, any, place, child, 1), Sizes({5, 8}, any, {15, 31, 49, 30}));
        QObject noWidget;
        Talsen::updateObjectSize(noWidget, 1.5, 1);

        // Icons of plain buttons only, at any depth.
        QWidget row(&child);
        const QList<QAbstractButton *> buttons{new QPushButton(&row), new QToolButton(&row),
                                               new LoadingButton(&row),
                                               new QCommandLinkButton(&row)};
        for (QAbstractButton *button : buttons) {
            button->setIconSize(QSize(16, 10));
            Talsen::changeObjectSizeInner(window, 1.5);
            QCOMPARE(button->iconSize(), button == buttons[3] ? QSize(16, 10) : QSize(24, 15));
        }
    }
};

TEST_MAIN(TestToolkit)
#include "tst_toolkit.moc"
