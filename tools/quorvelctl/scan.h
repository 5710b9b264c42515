// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/records.h"

#include <vector>

namespace ctl {

class Session;

// One scan of an axis, an element for each light.
struct Levels
{
    std::vector<int> levels; // 0 to 255
    std::vector<int> gains;  // 0 to 255; empty when the layout has none

    bool operator==(const Levels &) const = default;
};

// Scans an axis, command::settings::AxisX or AxisY, whose lights have been counted by the question
// that chose the layout: pairs have a gain for each light. Shows progress.
Levels scanAxis(Session &session, UCHAR axis, int count, bool pairs);

} // namespace ctl
