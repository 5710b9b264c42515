// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"
#include "thresholds.h"

#include <vector>

namespace lights {

// What the scans of one axis come to, light by light.
struct Typical
{
    std::vector<double> level;     // NaN: no scan has this light
    std::vector<double> noise;     // standard deviation of a scan; 0 where it is not known
    std::vector<double> saturated; // share of the readings that are at the top
    int scans = 0;                 // that most lights have
};

// What all lights of a neighbourhood do together from scan to scan, drift and gain, is taken out
// before levels and noise are: it is neither the one's nor the other's.
Typical typical(const AxisMeasurement &axis, const Thresholds &thresholds);

} // namespace lights
