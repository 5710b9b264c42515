// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"
#include "thresholds.h"
#include "verdict.h"

namespace lights {

// What the scans say of each light and of each stretch of lights. The same scans and thresholds
// give the same verdicts. An axis without lights or without scans has none. One scan is enough for
// everything but noise; the more there are, the finer the difference that is seen.
Verdicts judge(const Measurement &measurement, const Thresholds &thresholds = {});

} // namespace lights
