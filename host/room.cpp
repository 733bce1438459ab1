#include "room.h"

#include <QtMath>

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace TrackingProtocol;

namespace Room {
namespace {

/// Rises smoothly from 0 to 1 while `value` goes from `from` to `to`.
double ramp(double value, double from, double to)
{
    const double part = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return part * part * (3 - 2 * part);
}

/// From 0 to 1 and back once in a period: someone comes in, stays, and leaves.
double visit(qint64 time, qint64 period, double come, double leave)
{
    const auto now = double(time % period);
    return ramp(now, come, come + 6000) - ramp(now, leave, leave + 6000);
}

template <typename Position>
Person walker(int number, Position position, qint64 time, double y, double height)
{
    constexpr double fullSpeed = 1.2; // in centimetres per 40 ms
    constexpr double twoSteps = 110;
    const double x = position(time);
    const double turn = std::clamp((position(time + 40) - x) / fullSpeed, -1.0, 1.0);
    return {number, {x, y}, height, turn, std::copysign(2 * M_PI * x / twoSteps, turn)};
}

/// A view whose middle is the subject's, as far as the walls allow. The subject fills `fill` of its
/// height or width.
QRectF viewOf(const QRectF &subject, double fill)
{
    const double widths = subject.width() / whole.width();
    const double heights = subject.height() / whole.height();
    const QSizeF size = whole.size() * std::min(std::max(widths, heights) / fill, 1.0);
    const QPointF corner = subject.center() - QPointF(size.width(), size.height()) / 2;
    return {QPointF(std::clamp(corner.x(), 0.0, whole.width() - size.width()),
                    std::clamp(corner.y(), 0.0, whole.height() - size.height())),
            size};
}

} // namespace

std::array<QPointF, 3> Person::arm(int side) const
{
    const double up = side > 0 ? raise : 0;
    const double down = 1 - up;
    const double swing = side * (0.1 - 0.45 * turn * std::abs(turn) * std::sin(stride));
    const double upper = swing * down + 2.45 * up;
    const double lower = (swing + 0.25 * turn) * down + 3.0 * up;
    const QPointF shoulder(side * (21 - 5 * std::abs(turn)), -143);
    const QPointF elbow = shoulder + 29 * QPointF(std::sin(upper), std::cos(upper));
    return {shoulder, elbow, elbow + 27 * QPointF(std::sin(lower), std::cos(lower))};
}

QRectF Person::body() const
{
    return {feet.x() - height / 6, feet.y() - height, height / 3, height};
}

QRectF Person::headAndChest() const
{
    return {body().topLeft(), QSizeF(height / 3, height * 0.38)};
}

QRectF Person::raisedHand() const
{
    const QPointF hand = feet + arm(1).back() * height / 180;
    return raise < 0.95 ? QRectF() : QRectF(hand.x() - 10, hand.y() - 16, 20, 24);
}

QVector<Person> peopleAt(qint64 time)
{
    const auto tracked = [](qint64 ms) {
        return 320 + 170 * std::sin(M_PI_2 * std::sin(2 * M_PI * double(ms) / 36000));
    };
    const auto first = [](qint64 ms) {
        return -60 + 310 * visit(ms, 47000, 12000, 30000);
    };
    const auto second = [](qint64 ms) {
        return 700 - 160 * visit(ms, 61000, 16000, 40000);
    };

    QVector<Person> people{walker(0, tracked, time, 336, 180)};
    // At the ends of the walk.
    people[0].raise = ramp(std::abs(people[0].feet.x() - whole.center().x()), 158, 164);
    for (const Person &visitor :
         {walker(1, first, time, 304, 158), walker(2, second, time, 304, 168)}) {
        if (visitor.body().intersects(whole))
            people += visitor;
    }
    return people;
}

std::optional<QRectF> wantedView(const QVector<Person> &people, const Status &status)
{
    const Person &tracked = people.first();
    const QRectF hand = tracked.raisedHand();
    const quint8 composition = status.at(Composition);
    QRectF everyone;
    for (const Person &person : people)
        everyone |= person.body() & whole;
    const QRectF composed[] = {tracked.body(), tracked.headAndChest(), tracked.body(), everyone};

    if (status.at(Tracking) == 0)
        return whole;
    if (status.at(Tracking) != 1)
        return {};
    if (status.at(Type) == 0 && composition < std::size(composed))
        return viewOf(composed[composition], composition == 0 ? 0.6 : 0.75);
    if (status.at(Type) == 1 && !hand.isNull())
        return viewOf(hand, 0.3);
    if (status.at(Type) == 2)
        return viewOf(board, 0.85);
    return {};
}

QRectF nextView(const QRectF &view, const QRectF &wanted, qint64 elapsed, quint8 mode)
{
    if (mode != 1 && mode != 2)
        return view;
    // The time in which the distance shrinks to 37 %.
    const double slowness = mode == 1 ? 650 : 170;
    const double left = std::exp(-double(elapsed) / slowness);
    return {wanted.topLeft() + (view.topLeft() - wanted.topLeft()) * left,
            wanted.size() + (view.size() - wanted.size()) * left};
}

} // namespace Room
