// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "trend.h"
#include "verdict.h"

#include <QLatin1StringView>
#include <QString>

namespace lights {

// How files and other programs call them; never translated.
QLatin1StringView key(LightVerdict verdict);
QLatin1StringView key(StretchVerdict verdict);
QLatin1StringView key(Axis axis);

// How people do.
QString word(LightVerdict verdict);
QString word(StretchVerdict verdict);

// "X 17", as the light screen calls it.
QString lightName(Axis axis, int number);

// One sentence on what to do about a light that is not healthy, or about a stretch. Places are in
// millimetres from the left or from the top if the axis's pitch is known, else numbers of lights.
QString advice(Axis axis, int number, const Light &light, const AxisMeasurement &measured);
QString advice(const Stretch &stretch, const AxisMeasurement &measured);

// How the weakest light goes on, in one sentence.
QString wordsFor(const Trend &trend);

} // namespace lights
