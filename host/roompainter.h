#pragma once

#include "room.h"

class QPainter;

/// Paints the room and the people in it, in the room's coordinates. `time` moves the clouds.
void paintRoom(QPainter &painter, const QVector<Room::Person> &people, qint64 time);
