#pragma once

#include "measurement.h"
#include "verdict.h"

#include <QByteArray>
#include <QJsonObject>

namespace lights {

// What was found, as members to add to a measurement's JSON: "verdict" ("pass" or "service"),
// "lights" (all, with their numbers) and "findings" (what is wrong, with advice).
QJsonObject verdictsToJson(const Measurement &measurement, const Verdicts &verdicts);

// A line for each light, after one of headings; numbers with a full stop in every language.
QByteArray verdictsToCsv(const Verdicts &verdicts);

} // namespace lights
