// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"

#include <QRectF>
#include <QSizeF>

#include <array>
#include <optional>

namespace lights {

struct LightPlace
{
    Axis axis = Axis::X;
    int number = 0;

    bool operator==(const LightPlace &) const = default;
};

// Where a picture of the frame as it stands on the wall has its screen and its lights: each light
// stands at both of its edges.
class Wall
{
public:
    static constexpr double LightLength = 14;
    static constexpr double Margin = 54; // for lights, letters and stretches around the screen

    // As large as room lets it, in the middle of it; a height of 0 is as much as it takes.
    Wall(const Measurement &measurement, QSizeF room);

    QSizeF size() const { return whole; }
    QRectF screen() const { return inner; }
    int lights(Axis axis) const { return axis == Axis::X ? lightsX : lightsY; }
    // Of both edges, so many lights long, away from the screen from so far to so far: above or to
    // the left first.
    std::array<QRectF, 2> along(Axis axis, double first, double count, double from,
                                double to) const;
    std::array<QRectF, 2> light(const LightPlace &place) const
    {
        return along(place.axis, place.number, 1, 0, LightLength);
    }
    // The light that stands nearest to a point of the margin; nothing inside the screen.
    std::optional<LightPlace> lightAt(QPointF point) const;

private:
    int lightsX;
    int lightsY;
    QSizeF whole;
    QRectF inner;
};

} // namespace lights
