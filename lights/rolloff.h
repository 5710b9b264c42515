// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <vector>

namespace lights {

// By how much the lights of an end may fall off by themselves, the outermost first, and how many
// of a short axis: one in so many.
inline constexpr std::array RollOffMost{0.35, 0.25, 0.18, 0.12, 0.08, 0.05};
inline constexpr int RollOffLights = int(RollOffMost.size());
inline constexpr int RollOffPart = 8;

// Shares of the levels expected at an end, the outermost light first, RollOffLights of them; NaN
// where nothing is known. With what the others are like: own, opposite, those of the other axis.
using Ends = std::array<std::vector<double>, 4>;

// What two ends fall off alike is their nature: the own axis's if they do, else any two of the
// four. Where an end has nothing to agree with it may still go on as its inner lights begin. What
// is allowed comes as shares, 1 for nothing.
std::vector<double> rollOff(const Ends &ends);

} // namespace lights
