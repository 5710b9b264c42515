// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/records.h"

#include <vector>

namespace lights {

// One scan of an axis, put together of its pages as they come.
class AxisScan
{
public:
    enum class Taken {
        More,  // it fits, and others are to come
        Whole, // that was the last one
        Gap,   // one before it is missing: what came is of no use
    };

    AxisScan() = default;
    // Pairs: pages carry a level and a gain for each light.
    AxisScan(int lights, bool hasPairs)
        : all(lights)
        , pairs(hasPairs)
    {
    }

    // A first page begins the scan anew.
    Taken take(const command::ScanPage &page);

    int lights() const { return all; }
    // Of the lights that came, 0 to 255.
    const std::vector<int> &levels() const { return levelsCame; }
    const std::vector<int> &gains() const { return gainsCame; } // empty without pairs
    // A transfer that breaks in the middle leaves zeros behind it, which dead lights look like.
    bool mayBeTorn() const { return torn; }

private:
    int all = 0;
    bool pairs = false;
    std::vector<int> levelsCame;
    std::vector<int> gainsCame;
    bool torn = false;
};

} // namespace lights
