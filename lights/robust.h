// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

// Statistics that single values far off do not move.
namespace lights::robust {

// Each takes its values in any order; NaN is no value. Without values it answers 0.
double quantile(std::vector<double> values, double share);
double median(std::vector<double> values);
// The standard deviation that a normal distribution of the same median deviation would have.
double spread(const std::vector<double> &values);
double mean(const std::vector<double> &values);
// The mean of the middle half.
double midMean(std::vector<double> values);

// How far above its mean a standard normal value lies with so small a chance, 1e-12 to 0.5.
double normalDeviate(double chance);
// By how much the standard deviation of so many independent values exceeds the true one with so
// small a chance; count is at least 2.
double deviationExcess(int count, double chance);

} // namespace lights::robust
