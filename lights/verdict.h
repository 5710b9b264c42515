// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"

#include <optional>
#include <vector>

namespace lights {

// What a light itself is like. A light that a stretch darkens is healthy unless it stands out
// there.
enum class LightVerdict { Healthy, Weak, Dead, Noisy, Saturated, SwitchedOff };

struct Light
{
    LightVerdict verdict = LightVerdict::Healthy;
    double level = 0;           // typical, without what all lights around it do together
    double expected = 0;        // the level that a healthy light at this place would have
    double noise = 0;           // standard deviation of one scan, in levels; 0 if noiseKnown is not
    double confidence = 0;      // 0 to 1
    bool compensated = false;   // Weak: the level is right, at a gain far above its neighbours'
    std::optional<int> stretch; // index of the stretch that it lies in

    bool operator==(const Light &) const = default;
};

enum class StretchVerdict { Dirt, Obstacle, BarOutOfLine, BrokenBoard };

// Lights first to last, both included, that have one thing wrong with them together.
struct Stretch
{
    StretchVerdict verdict = StretchVerdict::Dirt;
    Axis axis = Axis::X;
    int first = 0;
    int last = 0;
    double depth = 0;      // 0 to 1: how much of the level is gone where it is worst
    double slope = 0;      // BarOutOfLine: change of the level from first to last, -1 to 1
    double confidence = 0; // 0 to 1

    bool operator==(const Stretch &) const = default;
};

struct AxisVerdict
{
    std::vector<Light> lights;
    bool noiseKnown = false; // false: one scan tells nothing of noise
    double noise = 0;        // of a usual light, in levels
    double alternation = 0;  // how much higher odd lights lie than even ones, a share

    bool operator==(const AxisVerdict &) const = default;
};

struct Verdicts
{
    AxisVerdict x;
    AxisVerdict y;
    std::vector<Stretch> stretches; // X first, by place

    const AxisVerdict &axis(Axis which) const { return which == Axis::X ? x : y; }
    AxisVerdict &axis(Axis which) { return which == Axis::X ? x : y; }
    // True: nothing needs service. A light that somebody switched off counts as one that does.
    bool isPass() const;

    bool operator==(const Verdicts &) const = default;
};

} // namespace lights
