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
#include <QIcon>
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

/// What presses do: click 'c', nothing '.', 'a' if accepted; the last click deletes the widget.
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
    for (const int after : {0, 150, 199}) // also one that is dropped holds the next ones back
        press(after);
    press(100, Qt::RightButton);
    for (const int after : {100, -5000, 200}) // at first 200 ms after the last left press
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
            QCursor::setPos(20, 20); // this platform has pixels only where a window is
            QVERIFY(!pickScreenColor(rgb));
            QCOMPARE(rgb[0], 12);
        }
    }

    // What the fuzzer does not see: the picture itself, and a file that is missing.
    void pictureFiles()
    {
        const QTemporaryDir folder;
        QFile svg(folder.filePath("half.SVG"));
        QVERIFY(svg.open(QIODevice::WriteOnly));
        svg.write("<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'>"
                  "<rect width='5' height='10' fill='#00ff00'/></svg>");
        svg.close();
        const QImage half = loadPixmapAutoFormat(svg.fileName(), QSize(40, 20), false).toImage();
        QCOMPARE(half.pixelColor(10, 10), QColor(Qt::green));
        QCOMPARE(half.pixelColor(30, 10), QColor(Qt::transparent));
        QVERIFY(loadSvgAsPixmap(svg.fileName(), QSize()).isNull());

        const QString later = folder.filePath("later.png");
        QTest::ignoreMessage(QtDebugMsg, qPrintable("can not read file :  \"" + later + '"'));
        QVERIFY(loadPixmapAutoFormat(later, QSize(9, 9), false).isNull());
        QVERIFY(half.save(later));
        QCOMPARE(loadPixmapAutoFormat(later, QSize(0, 0), false).size(), QSize(40, 20));
    }

    // Of a label of 61 x 31, whose centre is (30, 15): in the order of the locations, lines, and
    // the square of an arc between them.
    void guideLines()
    {
        const QVector<QLine> across{{0, 15, 5, 15}, {56, 15, 61, 15}};
        const QVector<QLine> down{{30, 0, 30, 5}, {30, 26, 30, 31}};
        const struct
        {
            const char *name;
            QVector<QLine> lines;
            QRect square = {};
            int start = 0, span = 0; // in degrees
        } guides[] = {
            {"top left", {{37, 15, 61, 15}, {30, 22, 30, 31}}, {30, 15, 14, 14}, 90, 90},
            {"top", across},
            {"top right", {{0, 15, 23, 15}, {30, 22, 30, 31}}, {16, 15, 14, 14}, 0, 90},
            {"left", down},
            {"right", down},
            {"bottom left", {{37, 15, 61, 15}, {30, 0, 30, 8}}, {30, 1, 14, 14}, 180, 90},
            {"bottom", across},
            {"bottom right", {{0, 15, 23, 15}, {30, 0, 30, 8}}, {16, 1, 14, 14}, 0, -90},
            {"none", {}},
        };
        for (int location = 0; location < int(std::size(guides)); ++location) {
            const auto &[name, lines, square, start, span] = guides[location];
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
            QLabel plain("30°"); // over the guide
            BgLineLabel label(nullptr);
            label.setText(plain.text());
            label.setStyleSheet(QString("location:%1;").arg(location));
            QVERIFY2(rendered(label, emptyImage(61, 31)) == rendered(plain, wanted), name);
        }
    }

    void presses()
    {
        VirtualTime::start();
        const QString due("c...c.cca deleted");
        QCOMPARE(clicksOf(new QPressFrame(nullptr), &QPressFrame::clicked), due);
        QCOMPARE(clicksOf(new PixmapDisplay, &PixmapDisplay::onClick), due);
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
        const auto [tile, button] = insertAreaTile(*row, add, -30, 30);
        window.show();
        QCOMPARE(tile->width(), 91);

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
        QCOMPARE(rendered(*tile, emptyImage(91, 35), QWidget::DrawChildren), wanted);

        QCOMPARE(button->geometry(), QRect(74, 5, 12, 12));
        button->show();
        // Of the disc behind the cross.
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

        // Icons of plain buttons alone, at any depth.
        QWidget row(&child);
        const QList<QAbstractButton *> buttons = {new QPushButton(&row), new QToolButton(&row),
                                                  new LoadingButton(&row),
                                                  new QCommandLinkButton(&row)};
        for (QAbstractButton *button : buttons)
            button->setIconSize(QSize(16, 10));
        Talsen::changeObjectSizeInner(window, 1.5);
        QList<int> widths;
        for (QAbstractButton *button : buttons)
            widths << button->iconSize().width();
        QCOMPARE(widths, (QList<int>{24, 24, 24, 16}));
        QCOMPARE(buttons[0]->iconSize().height(), 15);
    }
};

TEST_MAIN(TestToolkit)
#include "tst_toolkit.moc"
