// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace lights {

enum class Axis { X, Y };
inline constexpr std::array<Axis, 2> Axes{Axis::X, Axis::Y};

// The scale of levels: a one-byte level of a scan page. A converter reading of 12 bits is 16 times
// that, a value of the signal test's log 4 times.
inline constexpr double FullLevel = 255;
inline constexpr double ReadingPerLevel = 16;
inline constexpr double LogUnitPerLevel = 4;
// What a log may hold that was written on the signal test's scale, which ends a little higher.
inline constexpr double LargestLevel = 275;

// Enough for a night of scans; of a longer series the newest are kept.
inline constexpr int MaxScans = 1024;

// The levels of all lights of one axis at one time, 0 to LargestLevel. NaN: that light's page got
// lost.
using Scan = std::vector<float>;

// What was measured of one axis.
struct AxisMeasurement
{
    int lights = 0;              // 0: not measured; else each scan has so many levels
    std::vector<Scan> scans;     // oldest first
    std::vector<float> gains;    // AGC, 0 to 255, the mean over the scans; empty: not known
    std::vector<int> offsets;    // of the AGC, -128 to 127; empty: not known
    std::vector<bool> off;       // switched off by somebody; empty: not known
    std::optional<double> pitch; // mm from one light to the next

    bool operator==(const AxisMeasurement &) const = default;
};

// What a unit says of itself, or what somebody calls it.
struct Unit
{
    QString identification; // empty: it gives none
    QString name;           // empty: nobody gave it one

    bool operator==(const Unit &) const = default;
};

struct Measurement
{
    Unit unit;
    QDateTime date; // UTC; invalid: not known
    AxisMeasurement x;
    AxisMeasurement y;

    const AxisMeasurement &axis(Axis which) const { return which == Axis::X ? x : y; }
    AxisMeasurement &axis(Axis which) { return which == Axis::X ? x : y; }

    bool operator==(const Measurement &) const = default;
};

} // namespace lights
