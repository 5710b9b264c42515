// SPDX-License-Identifier: GPL-3.0-or-later

#include "typical.h"

#include "robust.h"

#include <algorithm>
#include <cmath>

namespace lights {

namespace {

// Lights whose common change is taken for one; fewer than half a dozen that shine say too little.
constexpr int BlockLights = 24;
constexpr int FewestInBlock = 6;
// Below this a level is too coarse to make a ratio of.
constexpr double FaintLevel = 20;

std::vector<double> columnOf(const AxisMeasurement &axis, int light)
{
    std::vector<double> readings;
    readings.reserve(axis.scans.size());
    for (const Scan &scan : axis.scans) {
        if (const double level = scan[size_t(light)]; !std::isnan(level))
            readings.push_back(level);
    }
    return readings;
}

// How one scan differs from the usual levels, along the axis.
class CommonChange
{
public:
    CommonChange(const Scan &scan, const std::vector<double> &usual, double top)
    {
        const int count = int(scan.size());
        const int blocks = std::max(1, count / BlockLights);
        length = double(count) / blocks;
        std::vector<double> all;
        std::vector<std::vector<double>> parts(static_cast<size_t>(blocks));
        for (int i = 0; i < count; ++i) {
            const double was = usual[size_t(i)];
            if (std::isnan(scan[size_t(i)]) || std::isnan(was) || was < FaintLevel || was >= top)
                continue;
            const double ratio = scan[size_t(i)] / was;
            all.push_back(ratio);
            parts[size_t(std::min(int(i / length), blocks - 1))].push_back(ratio);
        }
        const double overall = all.empty() ? 1 : robust::median(std::move(all));
        for (std::vector<double> &part : parts) {
            factors.push_back(int(part.size()) < FewestInBlock ? overall
                                                               : robust::median(std::move(part)));
        }
    }

    double at(int light) const
    {
        const double place =
            std::clamp((light + 0.5) / length - 0.5, 0.0, double(factors.size() - 1));
        const auto below = size_t(place);
        const size_t above = std::min(below + 1, factors.size() - 1);
        return std::lerp(factors[below], factors[above], place - double(below));
    }

private:
    double length;               // lights a block
    std::vector<double> factors; // one for each block
};

double deviation(const std::vector<double> &values)
{
    const double middle = robust::mean(values);
    double sum = 0;
    for (const double value : values)
        sum += (value - middle) * (value - middle);
    return std::sqrt(sum / double(values.size() - 1));
}

} // namespace

Typical typical(const AxisMeasurement &axis, const Thresholds &thresholds)
{
    const auto count = size_t(axis.lights);
    Typical result{std::vector<double>(count, std::nan("")), std::vector<double>(count),
                   std::vector<double>(count), 0};
    std::vector<double> usual(count, std::nan(""));
    std::vector<double> counts;
    for (int i = 0; i < axis.lights; ++i) {
        const std::vector<double> readings = columnOf(axis, i);
        counts.push_back(double(readings.size()));
        if (readings.empty())
            continue;
        usual[size_t(i)] = robust::median(readings);
        const auto top = std::count_if(readings.begin(), readings.end(), [&](double level) {
            return level >= thresholds.saturatedLevel;
        });
        result.saturated[size_t(i)] = double(top) / double(readings.size());
    }
    result.scans = int(robust::median(std::move(counts)));

    std::vector<CommonChange> changes;
    changes.reserve(axis.scans.size());
    for (const Scan &scan : axis.scans)
        changes.emplace_back(scan, usual, thresholds.saturatedLevel);
    std::vector<double> levels;
    std::vector<double> free; // of the top
    for (int i = 0; i < axis.lights; ++i) {
        levels.clear();
        free.clear();
        const std::vector<double> own = columnOf(axis, i);
        for (size_t s = 0; s < axis.scans.size(); ++s) {
            const double level = axis.scans[s][size_t(i)];
            if (std::isnan(level))
                continue;
            // What is cut off at the top or has no light does not follow the others.
            const double change = level > thresholds.deadLevel ? changes[s].at(i) : 1;
            const bool isTop = level >= thresholds.saturatedLevel;
            levels.push_back(!isTop && change > 0 ? level / change : level);
            if (!isTop)
                free.push_back(levels.back());
        }
        if (levels.empty())
            continue;
        const std::vector<double> &telling = 2 * free.size() > levels.size() ? free : levels;
        if (telling.size() > 1)
            result.noise[size_t(i)] = deviation(telling);
        // Where nothing is common to the scans the light's own readings are all there is.
        const auto [lowest, highest] = std::minmax_element(own.begin(), own.end());
        result.level[size_t(i)] = std::clamp(robust::midMean(levels), *lowest, *highest);
    }
    return result;
}

} // namespace lights
