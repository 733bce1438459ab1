#include "bglinelabel.h"
#include "objectscaling.h"
#include "pixmapdisplay.h"
#include "pixmaputils.h"
#include "qpressframe.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QCommandLinkButton>
#include <QFile>
#include <QMouseEvent>
#include <QPointer>
#include <QTemporaryDir>
#include <QToolButton>

namespace {

using namespace std::chrono_literals;

/// The middle row and the middle column of a label of 27 x 27 pixels: '#' for the guide line, 'x'
/// for anything else. Arcs show at their ends.
QString guideOf(BgLineLabel &label)
{
    QImage image(27, 27, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    label.resize(image.size());
    label.render(&image, {}, {}, QWidget::DrawChildren);
    const auto look = [&image](int x, int y) {
        const QColor color = image.pixelColor(x, y);
        return color.alpha() < 50 ? '.' : qAbs(color.red() - 0x52) < 8 ? '#' : 'x';
    };
    QString row;
    QString column;
    for (int i = 0; i < 27; ++i) {
        row += look(i, 13);
        column += look(13, i);
    }
    return row + ' ' + column;
}

/// A '.' for each press with the left button, a 'c' for each click. The third click deletes the
/// widget.
template <typename Clickable, typename Signal>
QString clicksOf(Signal clicked)
{
    const QPointer<Clickable> widget(new Clickable(nullptr));
    QString counted;
    QObject::connect(widget, clicked, [&] {
        counted += 'c';
        if (counted.count('c') == 3)
            delete widget;
    });
    // An ignored press starts the interval, too. The clock may be set back.
    for (const auto pause : {0ms, 150ms, 199ms, 200ms, -5000ms, 200ms}) {
        VirtualTime::now += pause - 1ms;
        QTest::mousePress(widget, Qt::RightButton); // neither clicks nor starts the interval
        VirtualTime::now += 1ms;
        counted += '.';
        QTest::mousePress(widget, Qt::LeftButton);
    }
    return counted + (widget ? "" : " deleted");
}

class LoadingButton : public QToolButton
{
    Q_OBJECT
    using QToolButton::QToolButton;
};

} // namespace

/// Guide-line label, press frame, scaling, and pixmap functions.
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
        int rgb[3];
        QCursor::setPos(120, 120);
        QTRY_VERIFY(pickScreenColor(rgb) && rgb[0] == 12 && rgb[1] == 34 && rgb[2] == 56);
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
            {"a.png", svg, {0, 0}, {10, 10}},   {"a", pbm, {9, 9}, {18, 9}},
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

    // Style sheets of a label that had location 5 before.
    void guideLabels()
    {
        const QString spaces(1000, ' ');
        const struct
        {
            QString sheet, rest, guide;
        } rows[] = {
            {"color: red", "color: red", "...................#####..# ####.#####................."},
            {"location 6", "on 6", "................########..# .................#######..#"},
            {"location:1;" + spaces, spaces.left(995),
             "####.................#####. ..........................."},
            {"location;6:2", "6:2", "####.####.................. ...................#####..#"},
            {"allocation:3;relocation:5;", "alrelocation:5;",
             "........................... ####.................#####."},
            {"QLabel { color: red; }\nlocation:4;", "QLabel { color: red; }\n",
             "........................... ####.................#####."},
            {"location:6", "on:6", "####.................#####. ..........................."},
            {"location :  7  ; color: blue", " color: blue",
             "####.##.................... ####.##...................."},
            {"location:8;", "", "........................... ..........................."},
        };
        expectedWarnings.setPattern("Could not parse stylesheet|Unknown property");
        for (const auto &[sheet, rest, guide] : rows) {
            BgLineLabel label(nullptr);
            label.setStyleSheet("location:5;");
            label.setStyleSheet(sheet);
            QCOMPARE(label.styleSheet(), rest);
            QCOMPARE(guideOf(label), guide);
            label.setText("text");
            QVERIFY(guideOf(label) != guide);
        }
    }

    void presses()
    {
        VirtualTime::start();
        const QString due(".c...c..c deleted");
        QCOMPARE(clicksOf<QPressFrame>(&QPressFrame::clicked), due);
        QCOMPARE(clicksOf<PixmapDisplay>(&PixmapDisplay::onClick), due);
        QPressFrame frame(nullptr);
        frame.setFrameStyle(QFrame::Box | QFrame::Plain); // must not be drawn
        QCOMPARE(frame.grab().toImage().pixelColor(0, 0), frame.palette().color(QPalette::Window));
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
