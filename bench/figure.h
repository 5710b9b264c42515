// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

// One measured quantity: a line of the table that bench/run prints.
struct Figure
{
    enum class HeldBy { Median, Maximum };

    std::string name; // with its unit, if it has one
    double bar = 0;   // the largest value that is good enough; 0: for information only
    HeldBy heldBy = HeldBy::Median;
    std::vector<double> samples; // in any order

    // Without samples nothing was measured and no bar holds.
    bool holds() const;
};

// Prints the line on standard output; false when its bar does not hold.
bool print(const Figure &figure);

// The quotients of samples taken side by side, both of the same size.
std::vector<double> ratios(const std::vector<double> &dividends,
                           const std::vector<double> &divisors);
