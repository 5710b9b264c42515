// SPDX-License-Identifier: GPL-3.0-or-later

#include "wall.h"

#include <algorithm>
#include <cmath>

namespace lights {

namespace {

constexpr double LowestShape = 0.3; // height of a screen by its width
constexpr double HighestShape = 1.5;
constexpr double UsualShape = 0.5625;

double shapeOf(const Measurement &measurement)
{
    const double width = measurement.x.lights * measurement.x.pitch.value_or(1);
    const double height = measurement.y.lights * measurement.y.pitch.value_or(1);
    return width > 0 && height > 0 ? std::clamp(height / width, LowestShape, HighestShape)
                                   : UsualShape;
}

} // namespace

Wall::Wall(const Measurement &measurement, QSizeF room)
    : lightsX(measurement.x.lights)
    , lightsY(measurement.y.lights)
{
    const double shape = shapeOf(measurement);
    double width = std::max(room.width() - 2 * Margin, 1.0);
    if (room.height() > 0)
        width = std::min(width, std::max(room.height() - 2 * Margin, 1.0) / shape);
    const double height = width * shape;
    whole = {room.width(), room.height() > 0 ? room.height() : height + 2 * Margin};
    inner = {(whole.width() - width) / 2, (whole.height() - height) / 2, width, height};
}

std::array<QRectF, 2> Wall::along(Axis axis, double first, double count, double from,
                                  double to) const
{
    if (axis == Axis::X) {
        const double step = inner.width() / std::max(lightsX, 1);
        const double left = inner.left() + step * first;
        return {QRectF(left, inner.top() - to, step * count, to - from),
                QRectF(left, inner.bottom() + from, step * count, to - from)};
    }
    const double step = inner.height() / std::max(lightsY, 1);
    const double top = inner.top() + step * first;
    return {QRectF(inner.left() - to, top, to - from, step * count),
            QRectF(inner.right() + from, top, to - from, step * count)};
}

std::optional<LightPlace> Wall::lightAt(QPointF point) const
{
    const double outsideX = std::max(inner.left() - point.x(), point.x() - inner.right());
    const double outsideY = std::max(inner.top() - point.y(), point.y() - inner.bottom());
    const bool isX = outsideY > outsideX;
    const int lights = isX ? lightsX : lightsY;
    if (std::max(outsideX, outsideY) < 0 || std::max(outsideX, outsideY) > Margin || lights == 0)
        return {};
    const double part = isX ? (point.x() - inner.left()) / inner.width()
                            : (point.y() - inner.top()) / inner.height();
    if (part < 0 || part >= 1)
        return {};
    return LightPlace{isX ? Axis::X : Axis::Y, int(part * lights)};
}

} // namespace lights
