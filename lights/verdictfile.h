// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"
#include "trend.h"
#include "verdict.h"

#include <QByteArray>
#include <QJsonObject>

namespace lights {

// What was found, as members to add to a measurement's JSON: "verdict" ("pass" or "service"),
// "lights" (all, with their numbers), "findings" (what is wrong, with advice) and "touch" (where on
// the screen touches go wrong, as parts of its width and height).
QJsonObject verdictsToJson(const Measurement &measurement, const Verdicts &verdicts);

// Members for a comparison: "baseline" (its date, and the change of every light) and, where there
// is one, "trend".
QJsonObject comparisonToJson(const Measurement &baseline, const std::vector<Change> &changes,
                             const std::optional<Trend> &trend);

// A line for each light, after one of headings; numbers with a full stop in every language.
QByteArray verdictsToCsv(const Verdicts &verdicts);

} // namespace lights
