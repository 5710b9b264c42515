// SPDX-License-Identifier: GPL-3.0-or-later

#include "robust.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace lights::robust {

namespace {

// Of a normal distribution.
constexpr double DeviationPerMedianDeviation = 1.4826;

void dropMissing(std::vector<double> &values)
{
    std::erase_if(values, [](double value) { return std::isnan(value); });
}

} // namespace

double quantile(std::vector<double> values, double share)
{
    dropMissing(values);
    if (values.empty())
        return 0;
    const double place = share * double(values.size() - 1);
    const auto below = values.begin() + std::ptrdiff_t(place);
    std::nth_element(values.begin(), below, values.end());
    const double part = place - std::floor(place);
    if (part == 0)
        return *below;
    return *below + part * (*std::min_element(below + 1, values.end()) - *below);
}

double median(std::vector<double> values)
{
    return quantile(std::move(values), 0.5);
}

double spread(const std::vector<double> &values)
{
    const double middle = median(values);
    std::vector<double> deviations;
    deviations.reserve(values.size());
    for (const double value : values)
        deviations.push_back(std::abs(value - middle));
    return DeviationPerMedianDeviation * median(std::move(deviations));
}

double mean(const std::vector<double> &values)
{
    return values.empty()
               ? 0
               : std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

double midMean(std::vector<double> values)
{
    dropMissing(values);
    std::sort(values.begin(), values.end());
    const auto cut = std::ptrdiff_t(values.size() / 4);
    return mean(std::vector<double>(values.begin() + cut, values.end() - cut));
}

double normalDeviate(double chance)
{
    double low = 0;
    double high = 8;
    for (int i = 0; i < 60; ++i) {
        const double middle = (low + high) / 2;
        (0.5 * std::erfc(middle / std::numbers::sqrt2) > chance ? low : high) = middle;
    }
    return (low + high) / 2;
}

double deviationExcess(int count, double chance)
{
    // Wilson and Hilferty: the cube root of a chi-squared value is nearly normal.
    const double part = 2.0 / (9.0 * (count - 1));
    const double root = 1 - part + normalDeviate(chance) * std::sqrt(part);
    return std::sqrt(root * root * root);
}

} // namespace lights::robust
