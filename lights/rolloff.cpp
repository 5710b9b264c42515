// SPDX-License-Identifier: GPL-3.0-or-later

#include "rolloff.h"

#include <algorithm>
#include <cmath>

namespace lights {

namespace {

// Two ends that agree so well fall off by nature.
constexpr double RollOffAgreement = 0.08;
// An end falls off by so much more from light to light, once it does.
constexpr double LeastRollOff = 0.03;
constexpr double RollOffGrowth = 2.5;

} // namespace

std::vector<double> rollOff(const Ends &ends)
{
    const auto agree = [](double a, double b) { return std::abs(a - b) < RollOffAgreement; };
    std::vector<double> allowed(size_t(RollOffLights), 1.0);
    for (size_t k = allowed.size(); k-- > 0;) {
        const double own = ends[0][k];
        double best = 0;
        for (size_t a = 0; a < ends.size(); ++a) {
            for (size_t b = 0; b < a; ++b) {
                if (agree(ends[a][k], ends[b][k]))
                    best = std::max({best, ends[a][k], ends[b][k]});
            }
        }
        if (agree(own, ends[1][k]))
            best = std::max(own, ends[1][k]);
        const double inner = k + 1 < allowed.size() ? 1 - allowed[k + 1] : 0;
        if (!agree(own, best) && inner > LeastRollOff &&
            1 - own < RollOffGrowth * inner + RollOffAgreement / 2)
            best = own;
        if (best >= 1 - RollOffMost[k])
            allowed[k] = std::min(best, 1.0);
    }
    return allowed;
}

} // namespace lights
