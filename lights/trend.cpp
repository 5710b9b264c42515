// SPDX-License-Identifier: GPL-3.0-or-later

#include "trend.h"

#include "judge.h"
#include "robust.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lights {

namespace {

constexpr double DaysPerYear = 365.25;
constexpr double MsPerDay = 86400000;
constexpr int FewestMeasurements = 3;

// How far Student's t lies out, either way, with a chance of 5 %.
double certainT(int freedom)
{
    constexpr std::array Table{12.706, 4.303, 3.182, 2.776, 2.571, 2.447, 2.365,
                               2.306,  2.262, 2.228, 2.201, 2.179, 2.160, 2.145,
                               2.131,  2.120, 2.110, 2.101, 2.093, 2.086};
    // Beyond the table it nears the normal deviate.
    return freedom <= int(Table.size()) ? Table[size_t(freedom - 1)] : 1.96 + 2.52 / freedom;
}

struct DatedLevel
{
    double day; // since the beginning of 1970
    double level;
};

bool shines(const Light &light)
{
    return light.verdict == LightVerdict::Healthy || light.verdict == LightVerdict::Weak ||
           light.verdict == LightVerdict::Noisy;
}

// A straight line through points, and where it meets a level.
class Line
{
public:
    explicit Line(const std::vector<DatedLevel> &points)
        : count(int(points.size()))
    {
        for (const DatedLevel &point : points) {
            meanDay += point.day / count;
            meanLevel += point.level / count;
        }
        double crossed = 0;
        for (const DatedLevel &point : points) {
            squared += (point.day - meanDay) * (point.day - meanDay);
            crossed += (point.day - meanDay) * (point.level - meanLevel);
        }
        if (squared == 0)
            return;
        slope = crossed / squared;
        double rest = 0;
        for (const DatedLevel &point : points) {
            const double off = point.level - meanLevel - slope * (point.day - meanDay);
            rest += off * off;
        }
        // Levels are rounded to whole ones: a line is never known better than that.
        constexpr double RoundingVariance = 1.0 / 12;
        variance = std::max(rest / (count - 2), RoundingVariance);
    }

    // Fieller's interval: the days on which the line may be at the level, with 95 %.
    std::optional<std::array<double, 3>> days(double level) const
    {
        if (squared == 0 || slope >= 0)
            return {};
        const double t = certainT(count - 2);
        const double above = meanLevel - level;
        const double a = slope * slope - t * t * variance / squared;
        if (a <= 0)
            return {};
        const double b = 2 * slope * above;
        const double c = above * above - t * t * variance / count;
        const double root = std::sqrt(std::max(0.0, b * b - 4 * a * c));
        return std::array{meanDay + (-b - root) / (2 * a), meanDay - above / slope,
                          meanDay + (-b + root) / (2 * a)};
    }

    double slope = 0; // levels a day

private:
    int count;
    double meanDay = 0;
    double meanLevel = 0;
    double squared = 0;
    double variance = 0;
};

QDate dateOf(double day)
{
    return QDate(1970, 1, 1).addDays(qint64(std::floor(day)));
}

} // namespace

std::vector<Change> changesSince(const Verdicts &then, const Verdicts &now)
{
    std::vector<Change> all;
    for (const Axis axis : Axes) {
        const std::vector<Light> &before = then.axis(axis).lights;
        const std::vector<Light> &after = now.axis(axis).lights;
        if (before.size() != after.size())
            continue;
        std::vector<double> ratios;
        for (size_t i = 0; i < before.size(); ++i) {
            if (shines(before[i]) && shines(after[i]))
                ratios.push_back(after[i].level / before[i].level);
        }
        const double together = ratios.empty() ? 1 : robust::median(std::move(ratios));
        for (size_t i = 0; i < before.size(); ++i) {
            if (shines(before[i]))
                all.push_back({axis, int(i), before[i].level, after[i].level,
                               after[i].level / before[i].level / together - 1});
        }
    }
    return all;
}

std::optional<Trend> trendOf(const std::vector<Measurement> &measurements,
                             const Thresholds &thresholds)
{
    std::vector<Verdicts> verdicts;
    verdicts.reserve(measurements.size());
    for (const Measurement &measurement : measurements)
        verdicts.push_back(judge(measurement, thresholds));
    std::optional<Trend> trend;
    for (const Axis axis : Axes) {
        if (verdicts.empty())
            break;
        const std::vector<Light> &newest = verdicts.back().axis(axis).lights;
        for (int i = 0; i < int(newest.size()); ++i) {
            const Light &light = newest[size_t(i)];
            if (shines(light) && (!trend || light.level < trend->level))
                trend = {.axis = axis,
                         .light = i,
                         .level = light.level,
                         .limit = thresholds.touchLevel,
                         .fall = std::nullopt};
        }
    }
    if (!trend)
        return {};
    std::vector<DatedLevel> points;
    for (size_t m = 0; m < measurements.size(); ++m) {
        const std::vector<Light> &lights = verdicts[m].axis(trend->axis).lights;
        if (lights.size() == verdicts.back().axis(trend->axis).lights.size() &&
            shines(lights[size_t(trend->light)]))
            points.push_back({double(measurements[m].date.toMSecsSinceEpoch()) / MsPerDay,
                              lights[size_t(trend->light)].level});
    }
    trend->measurements = int(points.size());
    if (trend->measurements < FewestMeasurements)
        return trend;
    const Line line(points);
    trend->perYear = line.slope * DaysPerYear;
    const auto days = line.days(trend->limit);
    if (days && (*days)[1] < points.back().day + MostYears * DaysPerYear)
        trend->fall = Trend::Fall{.expected = dateOf((*days)[1]),
                                  .earliest = dateOf((*days)[0]),
                                  .latest = dateOf((*days)[2])};
    return trend;
}

} // namespace lights
