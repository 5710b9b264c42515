// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "report.h"
#include "wall.h"

#include <QString>

#include <optional>
#include <vector>

namespace lights {

// One thing that is wrong: of a stretch, or of one light.
struct Finding
{
    Axis axis = Axis::X;
    int first = 0;
    int last = 0;
    QString words; // what, and what to do
};

// Stretches first, then lights, without those that a stretch is the reason for.
std::vector<Finding> findingsOf(const Report &report);

// What is known of each light of an axis since the baseline.
std::vector<std::optional<Change>> changesOf(const Report &report, Axis axis);

// A light in one sentence: its name, verdict, level, and its change if that is known.
QString wordsFor(const Report &report, const LightPlace &place);

} // namespace lights
