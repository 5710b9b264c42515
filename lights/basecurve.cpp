#include "basecurve.h"

#include "robust.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace lights {

namespace {

constexpr int FewestLights = 6;
// From so many lights on an axis can have a curve of the fourth degree.
constexpr int ManyLights = 60;
constexpr int MaxTerms = 5;
// The share of lights that lie below the first guess.
constexpr double UpperQuantile = 0.75;
constexpr int QuantileRounds = 25;
constexpr int CentreRounds = 10;
// Relative deviations: of lights that still count for the curve, and of those that it follows
// where it is no polynomial.
constexpr double CountsWithin = 0.12;
constexpr double FollowsWithin = 0.07;
// Half the length over which it follows, in lights and as a part of the axis.
constexpr int FollowsLights = 4;
constexpr int FollowsPart = 16;
// Weight of "no difference" beside that of the lights there.
constexpr double Reluctance = 2;
// The slope is read here, since the very ends fall off by themselves.
constexpr double NearEnd = 0.8;
constexpr double SupportShare = 0.25;

using Terms = std::array<double, MaxTerms>;

// Legendre's polynomials, -1 to 1.
Terms termsAt(double t)
{
    const double t2 = t * t;
    return {1, t, (3 * t2 - 1) / 2, t * (5 * t2 - 3) / 2, (35 * t2 * t2 - 30 * t2 + 3) / 8};
}

double valueAt(const Terms &factors, double t)
{
    const Terms terms = termsAt(t);
    double sum = 0;
    for (size_t k = 0; k < terms.size(); ++k)
        sum += factors[k] * terms[k];
    return sum;
}

struct Point
{
    double t;     // -1 to 1
    double value; // logarithm of the level
    double weight;
};

// Weighted least squares. Terms from count on are 0.
Terms fit(const std::vector<Point> &points, size_t count)
{
    std::array<std::array<double, MaxTerms + 1>, MaxTerms> rows{};
    for (const Point &point : points) {
        const Terms terms = termsAt(point.t);
        for (size_t r = 0; r < count; ++r) {
            for (size_t c = 0; c < count; ++c)
                rows[r][c] += point.weight * terms[r] * terms[c];
            rows[r][MaxTerms] += point.weight * terms[r] * point.value;
        }
    }
    for (size_t r = 0; r < count; ++r)
        rows[r][r] += 1e-9; // a term that no point decides
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

// Along the upper edge first, then through the middle of what lies near that.
Terms robustFit(std::vector<Point> &points, size_t count)
{
    constexpr double Finest = 0.005;
    Terms factors{};
    std::vector<double> values;
    values.reserve(points.size());
    for (const Point &point : points)
        values.push_back(point.value);
    factors[0] = robust::quantile(std::move(values), UpperQuantile);
    for (int round = 0; round < QuantileRounds; ++round) {
        for (Point &point : points) {
            const double off = point.value - valueAt(factors, point.t);
            point.weight = (off > 0 ? UpperQuantile : 1 - UpperQuantile) /
                           std::max(std::abs(off), Finest);
        }
        factors = fit(points, count);
    }
    for (int round = 0; round < CentreRounds; ++round) {
        for (Point &point : points) {
            const double off = (point.value - valueAt(factors, point.t)) / CountsWithin;
            point.weight = std::abs(off) < 1 ? (1 - off * off) * (1 - off * off) : 0;
        }
        if (std::count_if(points.begin(), points.end(),
                          [](const Point &point) { return point.weight > 0; }) <= int(count))
            break;
        factors = fit(points, count);
    }
    return factors;
}

} // namespace

BaseCurve baseCurve(const std::vector<double> &levels)
{
    const int count = int(levels.size());
    const auto place = [count](double i) { return count > 1 ? 2 * i / (count - 1) - 1 : 0.0; };
    std::vector<Point> points;
    std::vector<int> numbers;
    for (int i = 0; i < count; ++i) {
        if (const double level = levels[size_t(i)]; level > 0) {
            points.push_back({place(i), std::log(level), 1});
            numbers.push_back(i);
        }
    }
    if (int(points.size()) < FewestLights)
        return {};
    const Terms factors = robustFit(points, count >= ManyLights ? 5 : 3);

    std::vector<double> near(size_t(count), std::nan(""));
    int outer[2] = {0, 0};
    for (size_t p = 0; p < points.size(); ++p) {
        const double off = points[p].value - valueAt(factors, points[p].t);
        if (std::abs(off) >= FollowsWithin)
            continue;
        near[size_t(numbers[p])] = off;
        if (std::abs(points[p].t) > 1.0 / 3)
            ++outer[points[p].t > 0];
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
        curve.level.push_back(std::exp(valueAt(factors, place(i)) + sum / weights));
    }
    curve.slope =
        std::exp((valueAt(factors, NearEnd) - valueAt(factors, -NearEnd)) / NearEnd) - 1;
    curve.slopeSupported = std::min(outer[0], outer[1]) >= SupportShare * count / 3;
    return curve;
}

} // namespace lights
