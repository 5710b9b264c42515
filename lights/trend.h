// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"
#include "thresholds.h"
#include "verdict.h"

#include <QDate>

#include <optional>
#include <vector>

namespace lights {

// How a light's level has changed since an earlier measurement.
struct Change
{
    Axis axis = Axis::X;
    int light = 0;
    double then = 0; // level
    double now = 0;
    double alone = 0; // now over then, without what its whole axis did, less 1

    bool operator==(const Change &) const = default;
};

// Of every light that gave a signal then, X first, by number. An axis of another number of lights
// has none.
std::vector<Change> changesSince(const Verdicts &then, const Verdicts &now);

// How the weakest light of the newest measurement goes on.
struct Trend
{
    // A light below the limit tells that no shadow on it is seen any more.
    struct Fall
    {
        QDate expected;
        QDate earliest; // these two with a certainty of 95 %
        QDate latest;

        bool operator==(const Fall &) const = default;
    };

    Axis axis = Axis::X;
    int light = 0;
    double level = 0;     // now
    double limit = 0;     // Thresholds::touchLevel
    int measurements = 0; // that have this light
    double perYear = 0;   // change of the level; 0 with fewer than three measurements
    // Nothing where the measurements do not show, with that certainty, that it falls at all, and
    // where it would be in more than MostYears.
    std::optional<Fall> fall;
};

inline constexpr int MostYears = 30;

// Of dated measurements of one unit, oldest first. Nothing if the newest has no light that shines.
std::optional<Trend> trendOf(const std::vector<Measurement> &measurements,
                             const Thresholds &thresholds = {});

} // namespace lights
