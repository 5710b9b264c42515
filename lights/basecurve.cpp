// SPDX-License-Identifier: GPL-3.0-or-later

#include "basecurve.h"

#include "robust.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

namespace lights {

namespace {

constexpr int FewestLights = 6;
// From so many lights on an axis can have a curve of the fourth degree.
constexpr int ManyLights = 60;
constexpr int MaxTerms = 4;
constexpr int FewTerms = 3;
// Curves through three lights each that are tried; with two lights in three too low one in
// twenty-seven goes through healthy ones.
constexpr int Trials = 250;
// Nothing much better can come.
constexpr double GoodEnough = 0.98;
// Relative deviations: of lights that speak for a trial and against it, of those that count for
// the curve, and of those that it follows where it is no polynomial.
constexpr double SpeaksWithin = 0.06;
constexpr double AboveBy = 0.08;
// What a term costs, in lights, and how large it is when it costs half of that.
constexpr double TermCosts = 2;
constexpr double TermCounts = 0.03;
constexpr double CountsWithin = 0.12;
constexpr double FollowsWithin = 0.07;
constexpr int CentreRounds = 8;
// How large factors are expected to be, beside lights that differ by a few percent: ends fall off
// evenly, and whatever is not even is small.
constexpr double Differ = 0.03;
constexpr std::array<double, MaxTerms> Expected{10, 0.3, 0.15, 0.05};
// Half the length over which the curve follows, in lights and as a part of the axis.
constexpr int FollowsLights = 4;
constexpr int FollowsPart = 16;
// Weight of "no difference" beside that of the lights there.
constexpr double Reluctance = 2;
constexpr double FarFromEnd = 0.25; // half an axis is 1

using Terms = std::array<double, MaxTerms>;

// Legendre's polynomials of the degrees 0, 1, 2 and 4: what falls off by nature does so at both
// ends, so in logarithms only a slope is odd.
Terms termsAt(double t)
{
    const double t2 = t * t;
    return {1, t, (3 * t2 - 1) / 2, (35 * t2 * t2 - 30 * t2 + 3) / 8};
}

struct CurvePoint
{
    Terms terms;
    double value; // logarithm of the level
    double weight = 1;

    double place() const { return terms[1]; } // -1 to 1
};

double valueAt(const Terms &factors, const Terms &terms)
{
    double sum = 0;
    for (size_t k = 0; k < terms.size(); ++k)
        sum += factors[k] * terms[k];
    return sum;
}

// Weighted least squares, reluctant to leave what is expected. Terms from count on are 0, and the
// second is unless the curve may lean.
Terms fit(const std::vector<CurvePoint> &points, size_t count, bool leaning = true)
{
    std::array<std::array<double, MaxTerms + 1>, MaxTerms> rows{};
    for (const CurvePoint &point : points) {
        if (point.weight == 0)
            continue;
        const Terms &terms = point.terms;
        for (size_t r = 0; r < count; ++r) {
            for (size_t c = 0; c < count; ++c)
                rows[r][c] += point.weight * terms[r] * terms[c];
            rows[r][MaxTerms] += point.weight * terms[r] * point.value;
        }
    }
    for (size_t r = 0; r < count; ++r)
        rows[r][r] += std::pow(Differ / Expected[r], 2);
    if (!leaning)
        rows[1][1] += 1e9;
    for (size_t step = 0; step < count; ++step) {
        for (size_t r = step + 1; r < count; ++r) {
            const double factor = rows[r][step] / rows[step][step];
            for (size_t c = step; c <= MaxTerms; ++c)
                rows[r][c] -= factor * rows[step][c];
        }
    }
    Terms factors{};
    for (size_t r = count; r-- > 0;) {
        double sum = rows[r][MaxTerms];
        for (size_t c = r + 1; c < count; ++c)
            sum -= rows[r][c] * factors[c];
        factors[r] = sum / rows[r][r];
    }
    return factors;
}

// Lights near the curve speak for it, lights above it against it: faults make levels lower. What
// cannot become more than least any more is not looked at to the end.
double score(const std::vector<CurvePoint> &points, const Terms &factors, double least)
{
    double sum = 0;
    // To lean or to bend has to bring so many lights nearer.
    for (size_t k = 1; k < FewTerms; ++k) {
        const double square = factors[k] * factors[k];
        sum -= TermCosts * square / (square + TermCounts * TermCounts);
    }
    auto left = double(points.size());
    for (const CurvePoint &point : points) {
        double off = point.value - factors[0];
        for (size_t k = 1; k < FewTerms; ++k)
            off -= factors[k] * point.terms[k];
        if (off > AboveBy)
            sum -= 1;
        else if (std::abs(off) < SpeaksWithin)
            sum += 1 - off * off / (SpeaksWithin * SpeaksWithin);
        left -= 1;
        if (sum + left < least)
            break;
    }
    return sum;
}

// The best of many curves through three lights each.
Terms bestTrial(const std::vector<CurvePoint> &points, bool leaning, double *most)
{
    constexpr double None = -std::numeric_limits<double>::infinity();
    std::vector<double> values;
    values.reserve(points.size());
    for (const CurvePoint &point : points)
        values.push_back(point.value);
    Terms best{robust::quantile(std::move(values), 0.75)};
    *most = score(points, best, None);
    // Always the same ones, as the same scans give the same verdicts.
    std::minstd_rand numbers(1);
    std::vector<CurvePoint> three(FewTerms);
    for (int trial = 0; trial < Trials && *most < GoodEnough * double(points.size()); ++trial) {
        for (CurvePoint &point : three) {
            point = points[numbers() % points.size()];
            point.weight = 1;
        }
        const Terms factors = fit(three, FewTerms, leaning);
        if (const double now = score(points, factors, *most); now > *most) {
            *most = now;
            best = factors;
        }
    }
    return best;
}

// From where to where the lights lie that count, but for a few at either end.
std::pair<double, double> supportOf(const std::vector<CurvePoint> &points)
{
    std::vector<double> places;
    for (const CurvePoint &point : points) {
        if (point.weight > 0)
            places.push_back(point.place());
    }
    return {robust::quantile(places, 0.02), robust::quantile(places, 0.98)};
}

void centre(std::vector<CurvePoint> &points, Terms &factors, size_t count)
{
    for (int round = 0; round < CentreRounds; ++round) {
        for (CurvePoint &point : points) {
            const double off = (point.value - valueAt(factors, point.terms)) / CountsWithin;
            point.weight = std::abs(off) < 1 ? (1 - off * off) * (1 - off * off) : 0;
        }
        factors = fit(points, count);
    }
}

} // namespace

BaseCurve baseCurve(const std::vector<double> &levels)
{
    const int count = int(levels.size());
    const auto place = [count](double i) { return count > 1 ? 2 * i / (count - 1) - 1 : 0.0; };
    std::vector<CurvePoint> points;
    std::vector<int> numbers;
    for (int i = 0; i < count; ++i) {
        if (const double level = levels[size_t(i)]; level > 0) {
            points.push_back({termsAt(place(i)), std::log(level)});
            numbers.push_back(i);
        }
    }
    if (int(points.size()) < FewestLights)
        return {};
    double leaning = 0;
    double level = 0;
    Terms factors = bestTrial(points, true, &leaning);
    bestTrial(points, false, &level);
    centre(points, factors, FewTerms);
    const double lean = 2 * factors[1];
    // What bends so much says nothing of places beyond the lights that it goes by.
    const auto [first, last] = supportOf(points);
    if (count >= ManyLights && std::max(first + 1, 1 - last) < FarFromEnd)
        centre(points, factors, MaxTerms);

    std::vector<double> near(size_t(count), std::nan(""));
    for (size_t p = 0; p < points.size(); ++p) {
        const double off = points[p].value - valueAt(factors, points[p].terms);
        if (std::abs(off) >= FollowsWithin)
            continue;
        near[size_t(numbers[p])] = off;
    }
    BaseCurve curve;
    const int reach = std::max(FollowsLights, count / FollowsPart);
    for (int i = 0; i < count; ++i) {
        double sum = 0;
        double weights = Reluctance;
        for (int j = std::max(0, i - reach); j <= std::min(count - 1, i + reach); ++j) {
            if (std::isnan(near[size_t(j)]))
                continue;
            const double distance = double(j - i) / (reach + 1);
            const double weight = 1 - distance * distance;
            sum += weight * near[size_t(j)];
            weights += weight;
        }
        curve.level.push_back(std::exp(valueAt(factors, termsAt(place(i))) + sum / weights));
    }
    curve.slope = std::exp(lean) - 1;
    curve.slopeGain = (leaning - level) / double(points.size());
    curve.slopeSupport = (last - first) / 2;
    return curve;
}

} // namespace lights
