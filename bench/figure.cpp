// SPDX-License-Identifier: GPL-3.0-or-later

#include "figure.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iterator>

namespace {

double median(std::vector<double> samples)
{
    std::sort(samples.begin(), samples.end());
    const size_t half = samples.size() / 2;
    return samples.size() % 2 == 1 ? samples[half] : (samples[half - 1] + samples[half]) / 2;
}

} // namespace

bool Figure::holds() const
{
    if (samples.empty())
        return false;
    if (bar == 0)
        return true;
    const double judged = heldBy == HeldBy::Median
                              ? median(samples)
                              : *std::max_element(samples.begin(), samples.end());
    return judged <= bar;
}

bool print(const Figure &figure)
{
    const bool holds = figure.holds();
    if (figure.samples.empty()) {
        std::printf("| %-58s | nothing was measured\n", figure.name.c_str());
        return false;
    }
    char bar[16] = "";
    if (figure.bar != 0)
        std::snprintf(bar, sizeof bar, "%.2f", figure.bar);
    const auto [least, most] = std::minmax_element(figure.samples.begin(), figure.samples.end());
    const char *verdict = holds ? "holds" : "DOES NOT HOLD";
    std::printf("| %-58s | %6s | %7.2f | %7.2f | %7.2f | %3zu | %-13s |\n", figure.name.c_str(),
                bar, *least, median(figure.samples), *most, figure.samples.size(),
                figure.bar != 0 ? verdict : "");
    std::fflush(stdout);
    return holds;
}

std::vector<double> ratios(const std::vector<double> &dividends,
                           const std::vector<double> &divisors)
{
    std::vector<double> quotients;
    std::transform(dividends.begin(), dividends.end(), divisors.begin(),
                   std::back_inserter(quotients), std::divides<>());
    return quotients;
}
