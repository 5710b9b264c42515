// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "thresholds.h"
#include "verdict.h"

#include <vector>

namespace lights {

// The stretches of one axis, by place. Shares are of the level expected at the place, of lights
// that say nothing (switched off, saturated and the like) those of their neighbours.
std::vector<Stretch> findStretches(Axis axis, const std::vector<double> &shares, double spread,
                                   const Thresholds &thresholds);

} // namespace lights
