#include "cameraview.h"
#include "simulatedcamera.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QSignalSpy>

#include <cerrno>
#include <map>
#include <utility>

using namespace TrackingProtocol;
using namespace std::chrono_literals;
using People = QVector<Room::Person>;

class TestRoom : public Test
{
    Q_OBJECT
private Q_SLOTS:
    void theSubjectIsInView();
    void theViewMovesSmoothly();
    void theWidgetFollowsTheCamera();
};

void TestRoom::theSubjectIsInView()
{
    enum Subject { Whole, Board, Head, Body, Hand, Everyone, Nothing };
    const struct
    {
        Status status;
        Subject subject;
        double least, most; // part of the view's height or width
    } rows[] = {
        {{0, 0, 1, 1, 2}, Whole, 1, 1},       {{0, 1, 0, 1, 0}, Body, 0.4, 0.7},
        {{0, 1, 0, 1, 1}, Head, 0.74, 0.76},  {{0, 1, 0, 1, 2}, Body, 0.74, 0.76},
        {{0, 1, 0, 1, 3}, Everyone, 0.74, 1}, {{0, 1, 1, 1, 3}, Hand, 0.2, 0.5},
        {{0, 1, 2, 1, 3}, Board, 0.7, 0.95},  {{0, 2, 0, 1, 0}, Nothing, 0, 0},
        {{0, 1, 3, 1, 0}, Nothing, 0, 0},     {{0, 1, 0, 1, 4}, Nothing, 0, 0},
    };
    QSet<int> crowds;
    std::map<int, double> places;
    QSet<bool> hands;
    for (qint64 time = 0; time < 200000; time += 200) {
        const People people = Room::peopleAt(time);
        crowds += people.size();
        hands += people[0].raisedHand().isNull();
        QRectF bodies;
        for (const Room::Person &person : people) {
            bodies |= person.body() & Room::whole;
            // Nobody turns into somebody else when a third one leaves.
            const auto &[number, place] = *places.emplace(person.number, person.feet.x()).first;
            QVERIFY(qAbs(person.feet.x() - place) < 50);
            places[number] = person.feet.x();
        }
        const QRectF subjects[] = {Room::whole,
                                   Room::board,
                                   people[0].headAndChest(),
                                   people[0].body(),
                                   people[0].raisedHand(),
                                   bodies,
                                   {}};
        for (const auto &row : rows) {
            const QRectF subject = subjects[row.subject];
            const auto view = Room::wantedView(people, row.status);
            QCOMPARE(view.has_value(), !subject.isNull());
            if (!view)
                continue;
            QVERIFY(view->contains(subject) && Room::whole.contains(*view));
            QCOMPARE(view->width() / view->height(), 16.0 / 9);
            const double part =
                qMax(subject.height() / view->height(), subject.width() / view->width());
            QVERIFY(part >= row.least && part <= row.most);
        }
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
