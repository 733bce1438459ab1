#include "roompainter.h"

#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <algorithm>
#include <cmath>

using Room::Person;

namespace {

struct Colors
{
    QRgb skin, hair, shirt, sleeves, trousers;
    bool longHair;
};

/// By the number of the person.
constexpr Colors wardrobe[] = {{0xF2C29B, 0x5A3825, 0x2F8F83, 0x287B71, 0x34435E, false},
                               {0x9C6644, 0x2B1D18, 0xE0A030, 0xC38B2A, 0x5B4B8A, true},
                               {0xE9B48C, 0xB9622E, 0xC9525A, 0xAF474E, 0x4A5560, false}};

/// Draws shapes in plain colours.
struct Artist
{
    QPainter &painter;

    void use(QRgb color, double width, const QBrush &area)
    {
        const auto line = width > 0 ? Qt::SolidLine : Qt::NoPen;
        painter.setPen(QPen(QColor(color), width, line, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(area);
    }
    void box(QRgb color, const QRectF &box, double radius = 0)
    {
        use(color, 0, QColor(color));
        painter.drawRoundedRect(box, radius, radius);
    }
    void ellipse(QRgb color, const QPointF &middle, double xRadius, double yRadius)
    {
        use(color, 0, QColor(color));
        painter.drawEllipse(middle, xRadius, yRadius);
    }
    /// With round corners, and wider by half of `width` on each side.
    void polygon(QRgb color, double width, const QVector<QPointF> &corners)
    {
        use(color, width, QColor(color));
        painter.drawPolygon(corners);
    }
    void line(QRgb color, double width, const QVector<QPointF> &points)
    {
        use(color, width, Qt::NoBrush);
        painter.drawPolyline(points);
    }
};

void paintBackground(Artist &art, qint64 time)
{
    // These overlap, and go beyond the room, so that no edge is translucent.
    art.box(0xE8DCC8, {-9, -9, 658, 378});
    // The wall below the window hides the lower parts of the hills.
    const QPointF cloud(456 + 50 * std::sin(double(time) / 20000), 66);
    art.box(0xA9DAF3, {372, 30, 168, 126});
    art.ellipse(0xFFE08A, {508, 58}, 13, 13);
    art.box(0xFFFFFF, {cloud - QPointF(24, 5), QSizeF(48, 12)}, 6);
    art.ellipse(0xFFFFFF, cloud + QPointF(-5, -4), 12, 10);
    art.ellipse(0xFFFFFF, cloud + QPointF(9, -2), 8, 7);
    art.ellipse(0x8CC08A, {431, 166}, 58, 42);
    art.ellipse(0x6FAE78, {484, 170}, 56, 36);
    art.box(0xE8DCC8, {360, 156, 192, 44});
    art.line(0xFBF7F0, 6, {{372, 30}, {540, 30}, {540, 155}, {372, 155}, {372, 30}});
    art.line(0xFBF7F0, 6, {{456, 30}, {456, 155}});
    art.box(0xFBF7F0, {360, 156, 192, 8}, 2);
    art.polygon(0xD97C66, 3, {{352, 22}, {390, 22}, {369, 112}, {375, 182}, {352, 182}});
    art.polygon(0xD97C66, 3, {{560, 22}, {522, 22}, {543, 112}, {537, 182}, {560, 182}});
    art.line(0x8A6A4A, 4, {{344, 21}, {568, 21}});

    art.box(0xD9C8AE, {-9, 200, 658, 70});
    art.box(0xF5EDE0, {-9, 198, 658, 3});
    art.box(0xF5EDE0, {-9, 260, 658, 10});
    art.box(0xB78558, {-9, 268, 658, 101});
    for (int x = -600; x <= 600; x += 80)
        art.line(0xA87548, 1.2, {{320 + x * 0.7, 269}, {320.0 + x, 360}});
    art.ellipse(0x5E8CA0, {320, 322}, 235, 27);
    art.ellipse(0x7FAABB, {320, 321}, 212, 22);

    art.line(0x6B5B4B, 2, {{312, 0}, {312, 34}});
    art.ellipse(0xF3C766, {312, 60}, 9, 7);
    art.polygon(0x3F6F73, 6, {{308, 36}, {316, 36}, {336, 57}, {288, 57}});
    for (const double x : {-46, 46, -32, 32, -12, 12}) {
        const QPointF tip(600 + x, 176 + std::abs(x) * 0.9);
        art.polygon(std::abs(x) == 32 ? 0x57A56F : 0x3F8A5B, 5,
                    {{600, 248}, {592 + x * 0.7, 212}, tip, {608 + x * 0.7, 212}});
    }
    art.polygon(0xC7683F, 3, {{582, 248}, {618, 248}, {612, 288}, {588, 288}});
    art.box(0xD97E54, {576, 242, 48, 10}, 3);
}

void paintBoard(Artist &art)
{
    art.box(0x8C939C, Room::board, 5);
    art.box(0xFCFCFA, Room::board.adjusted(5, 5, -5, -5), 2);
    art.painter.translate(Room::board.topLeft());
    art.box(0x8C939C, {64, 114, 80, 5}, 2); // a tray with a pen
    art.box(0xC9404A, {74, 111, 16, 3});
    art.line(0x3F4A58, 1.6, {{18, 18}, {18, 68}, {92, 68}}); // a chart
    for (int i = 0; i < 4; ++i)
        art.box(i < 3 ? 0x4C8BD0 : 0xE2703A, {25.0 + i * 16, 51.0 - i * 7, 10, 16.0 + i * 7});
    art.line(0xC9404A, 2, {{30, 40}, {46, 34}, {62, 36}, {80, 16}, {72, 18}, {80, 16}, {80, 25}});
    art.ellipse(0x58A878, {34, 93}, 14, 14);
    art.use(0, 0, QColor(0xE8B040));
    art.painter.drawPie(QRectF(20, 79, 28, 28), -40 * 16, 130 * 16);
    for (const double length : {34, 28, 18})
        art.line(0x9AA3AE, 2, {{60, 118 - length}, {60 + length, 118 - length}});
    art.box(0x58A878, {118, 18, 32, 20}, 4); // three shapes joined by arrows
    art.ellipse(0xE8B040, {176, 62}, 15, 12);
    art.polygon(0x4C8BD0, 2, {{134, 75}, {149, 86}, {134, 97}, {119, 86}});
    art.line(0x3F4A58, 2, {{154, 28}, {176, 28}, {176, 46}, {171, 41}, {176, 46}, {181, 41}});
    art.line(0x3F4A58, 2, {{176, 78}, {176, 86}, {155, 86}, {160, 81}, {155, 86}, {160, 91}});
    art.line(0x3F4A58, 2, {{134, 70}, {134, 43}, {129, 48}, {134, 43}, {139, 48}});
    art.painter.translate(-Room::board.topLeft());
}

void paintLeg(Artist &art, const Person &person, const Colors &colors, int side)
{
    const double phase = person.stride + (side > 0 ? M_PI : 0);
    const double bend = 0.9 * person.turn * std::max(0.0, std::cos(phase));
    const double thigh = 0.42 * person.turn * std::sin(phase) + 0.25 * bend;
    const double shin = thigh - bend;
    const QPointF hip(side * (8.5 - 4 * std::abs(person.turn)), -88);
    const QPointF knee = hip + 42 * QPointF(std::sin(thigh), std::cos(thigh));
    const QPointF ankle = knee + 40 * QPointF(std::sin(shin), std::cos(shin));
    art.line(colors.trousers, 15, {hip, knee, ankle});
    art.line(0x2B2B30, 8, {ankle + QPointF(-4, 3), ankle + QPointF(4 + 5 * person.turn, 3)});
}

void paintArm(Artist &art, const Person &person, const Colors &colors, int side)
{
    const auto [shoulder, elbow, hand] = person.arm(side);
    const QPointF forearm = hand - elbow;
    art.line(colors.skin, 9, {elbow, hand});
    art.line(colors.sleeves, 13, {shoulder, elbow, elbow + forearm * 0.2});
    art.painter.save();
    art.painter.translate(hand);
    art.painter.rotate(qRadiansToDegrees(std::atan2(forearm.x(), -forearm.y())));
    art.box(colors.skin, {-6, -8, 12, 13}, 5);
    // The fingers of a raised hand are spread.
    const double spread = 3.1 + (side > 0 ? person.raise : 0);
    for (const double finger : {-1.5, -0.5, 0.5, 1.5})
        art.line(colors.skin, 2.9, {{finger * 2.7, -6}, {finger * spread, -14}});
    art.line(colors.skin, 3.2, {{-side * 5.0, 0}, {-side * 2.8 * spread, -6}});
    art.painter.restore();
}

void paintHead(Artist &art, const Person &person, const Colors &colors)
{
    const double look = person.turn * 5;
    const QRgb shade = QColor(colors.skin).darker(118).rgb();
    art.painter.translate(person.turn * 2, -164);
    if (colors.longHair)
        art.box(colors.hair, {-17, -18, 34, 43}, 15);
    art.line(shade, 9, {{-person.turn, 21}, {0, 12}});
    art.box(colors.skin, {-16, -2, 32, 8}, 4); // ears
    art.box(colors.skin, {-13, -15, 26, 31}, 13);
    QPainterPath hair(QPointF(-14, 2));
    hair.cubicTo(-17, -23, 17, -23, 14, 2);
    hair.quadTo(12, -6, 7 + look / 2, -8);
    hair.quadTo(look - 2, -4, look / 2 - 8, -9);
    hair.quadTo(-11, -6, -14, 2);
    art.painter.fillPath(hair, QColor(colors.hair));
    for (const double x : {look - 5, look + 5}) {
        art.ellipse(0x2A2523, {x, 1.5}, 1.5, 1.9);
        art.line(colors.hair, 1.2, {{x - 2, -2.8}, {x + 2, -2.8}});
    }
    art.line(shade, 1.4, {{look * 1.2, 4}, {look * 1.2 + 0.8, 6.2}, {look * 1.2 - 0.6, 6.4}});
    art.use(0x9C3B34, 1.4, Qt::NoBrush);
    art.painter.drawArc(QRectF(look - 5, 4.5, 10, 7), 205 * 16, 130 * 16);
    art.painter.translate(-person.turn * 2, 164);
}

void paintPerson(Artist &art, const Person &person, const Colors &colors)
{
    const double pace = std::abs(person.turn);
    const int far = person.turn < 0 ? 1 : -1;
    art.painter.save();
    art.painter.translate(person.feet);
    art.painter.scale(person.height / 180, person.height / 180);
    art.ellipse(0x6F6A66, {0, 0}, 28, 5);
    // The body is lowest when the legs are furthest apart.
    art.painter.translate(0, -2 + 7 * pace * std::pow(std::sin(person.stride), 2));
    paintArm(art, person, colors, far);
    paintLeg(art, person, colors, far);
    paintLeg(art, person, colors, -far);
    const double shoulder = 17 - 4 * pace;
    art.polygon(colors.shirt, 14, {{-shoulder, -141}, {shoulder, -141}, {10, -92}, {-10, -92}});
    art.ellipse(colors.skin, {person.turn * 2, -148}, 7, 6);
    paintHead(art, person, colors);
    paintArm(art, person, colors, -far);
    art.painter.restore();
}

} // namespace

void paintRoom(QPainter &painter, const QVector<Person> &people, qint64 time)
{
    Artist art{painter};
    paintBackground(art, time);
    paintBoard(art);
    // The tracked person is in front.
    for (int i = people.size() - 1; i >= 0; --i)
        paintPerson(art, people.at(i), wardrobe[people.at(i).number]);
}
