// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

namespace lights {

// The level that a healthy light would have at each place of an axis.
struct BaseCurve
{
    std::vector<double> level; // empty: too few lights shine to tell
    double slope = 0;          // ratio of the last to the first end, less 1
    double slopeGain =
        0; // share of lights that are near a curve with a slope and near none without
    double slopeSupport = 0; // part of the axis that healthy lights span
};

// Faults make levels lower, seldom higher; so this is a smooth curve along the upper edge of the
// levels, of which up to two thirds may be too low, in heaps too. NaN: no level to go by.
BaseCurve baseCurve(const std::vector<double> &levels);

} // namespace lights
