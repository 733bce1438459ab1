#pragma once

#include "trackingprotocol.h"

#include <QPointF>
#include <QRectF>
#include <QVector>

#include <array>
#include <optional>

/// The room in front of the simulated camera: who is where, and which part of it the camera shows.
/// Lengths are in centimetres, positions from the room's top left corner, times in milliseconds.
namespace Room {

constexpr QRectF whole(0, 0, 640, 360); ///< in the format of the picture, 16:9
constexpr QRectF board(52, 24, 208, 116);

struct Person
{
    int number; ///< 0: the tracked person; 1, 2: the visitors
    QPointF feet;
    double height;
    double turn = 0;   ///< where the person walks: -1 left, 1 right, 0 stands still
    double stride = 0; ///< phase of the steps, in radians
    double raise = 0;  ///< of the right hand in the picture: 0 hangs down, 1 is raised

    /// Shoulder, elbow and hand of the arm on the picture's left (-1) or right (1), for a person of
    /// 180 cm, relative to the feet.
    std::array<QPointF, 3> arm(int side) const;

    QRectF body() const; ///< from head to feet
    QRectF headAndChest() const;
    QRectF raisedHand() const; ///< null while the hand is not up
};

/// Everyone who is at least partly in the room. The first is the person whom the camera tracks.
QVector<Person> peopleAt(qint64 time);

/// The part of the room that a camera with this status should show. Nothing if the camera should
/// keep its view: the hand is down, or a setting has an unknown value.
std::optional<QRectF> wantedView(const QVector<Person> &people,
                                 const TrackingProtocol::Status &status);

/// Where a view is after `elapsed` on its way to `wanted`. An unknown mode does not move it.
QRectF nextView(const QRectF &view, const QRectF &wanted, qint64 elapsed, quint8 mode);

} // namespace Room
