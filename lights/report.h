// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"
#include "thresholds.h"
#include "trend.h"
#include "verdict.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace lights {

// What there is to say to a customer.
struct Report
{
    Measurement measurement;
    Verdicts verdicts;
    Thresholds thresholds;
    QString version;                     // of the program, as it calls itself
    std::optional<Measurement> baseline; // what changes are since
    std::vector<Change> changes;         // for every light, or none
    std::optional<Trend> trend;
};

// One page that needs nothing else: no script, no picture and no style from anywhere. Pictures are
// SVG with a text for those who do not see them; colours are told apart without red and green, and
// letters stand beside them. UTF-8.
QByteArray toHtml(const Report &report);

// The measurement with everything that was found, for programs; ScanFile reads it back.
QJsonObject toJson(const Report &report);

} // namespace lights
