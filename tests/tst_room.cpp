#include "cameraview.h"
#include "simulatedcamera.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QSignalSpy>

#include <cerrno>
#include <utility>

using namespace TrackingProtocol;
using namespace std::chrono_literals;
using People = QVector<Room::Person>;

struct Expected
{
    Status status;
    QRectF (*subject)(const People &people); ///< null if the view does not change
    double least, most;                      ///< part of the view's height or width
};
Q_DECLARE_METATYPE(Expected)

class TestRoom : public Test
{
    Q_OBJECT
private Q_SLOTS:
    void theSubjectIsInView_data();
    void theSubjectIsInView();
    void theViewMovesSmoothly();
    void theWidgetFollowsTheCamera();
};

void TestRoom::theSubjectIsInView_data()
{
    QTest::addColumn<Expected>("expected");
    const auto nothing = [](const People &) {
        return QRectF();
    };
    const auto room = [](const People &) {
        return Room::whole;
    };
    const auto board = [](const People &) {
        return Room::board;
    };
    const auto head = [](const People &people) {
        return people[0].headAndChest();
    };
    const auto body = [](const People &people) {
        return people[0].body();
    };
    const auto hand = [](const People &people) {
        return people[0].raisedHand();
    };
    const auto all = [](const People &people) {
        QRectF bodies;
        for (const Room::Person &person : people)
            bodies |= person.body() & Room::whole;
        return bodies;
    };
    QTest::newRow("tracking off") << Expected{{0, 0, 1, 1, 2}, room, 1, 1};
    QTest::newRow("composition off") << Expected{{0, 1, 0, 1, 0}, body, 0.4, 0.7};
    QTest::newRow("Half Body") << Expected{{0, 1, 0, 1, 1}, head, 0.74, 0.76};
    QTest::newRow("Full Body") << Expected{{0, 1, 0, 1, 2}, body, 0.74, 0.76};
    QTest::newRow("Bodies") << Expected{{0, 1, 0, 1, 3}, all, 0.74, 1};
    QTest::newRow("Hand") << Expected{{0, 1, 1, 1, 3}, hand, 0.2, 0.5};
    QTest::newRow("Board") << Expected{{0, 1, 2, 1, 3}, board, 0.7, 0.95};
    QTest::newRow("unknown tracking") << Expected{{0, 2, 0, 1, 0}, nothing, 0, 0};
    QTest::newRow("unknown type") << Expected{{0, 1, 3, 1, 0}, nothing, 0, 0};
    QTest::newRow("unknown composition") << Expected{{0, 1, 0, 1, 4}, nothing, 0, 0};
}

void TestRoom::theSubjectIsInView()
{
    QFETCH(const Expected, expected);
    QSet<int> crowds;
    QSet<bool> hands;
    for (qint64 time = 0; time < 200000; time += 200) {
        const People people = Room::peopleAt(time);
        crowds += people.size();
        hands += people[0].raisedHand().isNull();
        const QRectF subject = expected.subject(people);
        const auto view = Room::wantedView(people, expected.status);
        QCOMPARE(view.has_value(), !subject.isNull());
        if (!view)
            continue;
        QVERIFY(view->contains(subject) && Room::whole.contains(*view));
        QCOMPARE(view->width() / view->height(), 16.0 / 9);
        const double part =
            qMax(subject.height() / view->height(), subject.width() / view->width());
        QVERIFY(part >= expected.least && part <= expected.most);
    }
    QCOMPARE(crowds, (QSet<int>{1, 2, 3}));
    QCOMPARE(hands.size(), 2);
}

void TestRoom::theViewMovesSmoothly()
{
    const auto pathAfter = [](int frames, quint8 mode) {
        QRectF view(0, 0, 160, 90);
        for (int i = 0; i < frames; ++i)
            view = Room::nextView(view, {100, 100, 320, 180}, 20, mode);
        return view.x() / 100;
    };
    for (const auto &[frames, mode] : {std::pair<int, quint8>{75, 1}, {20, 2}}) {
        QVERIFY(pathAfter(1, mode) > 0 && pathAfter(1, mode) < 0.2);
        QVERIFY(pathAfter(frames, mode) > 0.63 && pathAfter(frames, mode) < 0.95);
    }
    QCOMPARE(pathAfter(75, 3), 0.0);
}

void TestRoom::theWidgetFollowsTheCamera()
{
    VirtualTime::start();
    SimulatedCamera camera;
    CameraView view(camera);
    const QSignalSpy frames(&view, &CameraView::updatePic);
    const auto framesInASecond = [&] {
        const int before = frames.size();
        VirtualTime::advance(1s);
        return frames.size() - before;
    };
    const auto picture = [&] {
        framesInASecond();
        return view.grab().toImage();
    };
    view.show();
    QCOMPARE(framesInASecond(), 25);
    QVERIFY(picture() != picture());
    view.showMinimized();
    QCOMPARE(framesInASecond(), 0);
    view.showNormal();
    view.freeze(27000);
    const QImage frozen = picture();
    camera.setValue(Tracking, 0);
    QVERIFY(picture() != frozen);
    camera.setValue(Tracking, 1);
    Faults faults = noFaults;
    faults[Fault::Error] = EIO;
    camera.setFaults(faults);
    QCOMPARE(picture(), frozen);
    faults[Fault::Unplugged] = 1;
    camera.setFaults(faults);
    QCOMPARE(picture().pixelColor(view.rect().center()), QColor(Qt::black));
    view.hide();
    QCOMPARE(framesInASecond(), 0);
}

TEST_MAIN(TestRoom)
#include "tst_room.moc"
