// SPDX-License-Identifier: GPL-3.0-or-later

#include "verdict.h"

#include <algorithm>

namespace lights {

bool Verdicts::isPass() const
{
    const auto isHealthy = [](const Light &light) {
        return light.verdict == LightVerdict::Healthy;
    };
    return stretches.empty() && std::all_of(x.lights.begin(), x.lights.end(), isHealthy) &&
           std::all_of(y.lights.begin(), y.lights.end(), isHealthy);
}

} // namespace lights
