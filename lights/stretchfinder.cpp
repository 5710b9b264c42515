// SPDX-License-Identifier: GPL-3.0-or-later

#include "stretchfinder.h"

#include "robust.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <utility>

namespace lights {

namespace {

// Sizes that boards come in; other sizes count only for a board that is dark.
constexpr std::array BoardSizes{8, 10, 12, 16, 20, 24, 25, 30, 32, 40, 48, 50, 64};
// Parts of the greatest depth. A rise is measured from near none of it to near all of it, as near
// as the spread of the lights lets one look.
constexpr double NearAtBest = 0.12;
constexpr double NearAtWorst = 0.25;
constexpr double NearSpreads = 2;
// Where a smudge ends, and where a step does.
constexpr double Shallow = 0.2;
constexpr double HalfDeep = 0.4;
// A stretch as dark as this lets nothing through.
constexpr double Dark = 0.93;
// By how much the outermost light of a board may differ from the others.
constexpr double Alike = 0.15;
// How many spreads of healthy lights a stretch has to stand out by.
constexpr double EdgeSpreads = 2.5;
constexpr double DepthSpreads = 5;
// The part of a slope that is on the way up, of what it is on a straight line.
constexpr double SlopePart = 0.53;
// On a straight line the last step is as steep as the first; on the flank of a smudge it is not.
constexpr double LeastStraight = 0.45;

// One run of lights that are too low.
struct Run
{
    int first;
    int last;
};

// How the depth grows at one end of a run.
struct Side
{
    bool open = false; // the axis ends here
    double rise = 0;   // lights
    int half = 0;      // the outermost light of the run proper, if its end is a step
    int shallow = 0;   // the outermost light of the run proper, if its end is gradual
};

class Finder
{
public:
    Finder(Axis theAxis, const std::vector<double> &shares, double theSpread,
           const Thresholds &theThresholds)
        : axis(theAxis)
        , count(int(shares.size()))
        , thresholds(theThresholds)
        , spread(theSpread)
        , edge(std::max(theThresholds.stretchEdge, EdgeSpreads * theSpread))
        , seed(std::max(theThresholds.stretchDepth, DepthSpreads * theSpread))
    {
        for (const double share : shares)
            depths.push_back(1 - share);
    }

    std::vector<Stretch> find() const
    {
        std::vector<Stretch> found;
        for (const Run &run : runs()) {
            if (const std::optional<Stretch> stretch = judgeRun(run))
                found.push_back(*stretch);
        }
        return found;
    }

private:
    double depthAt(int light) const
    {
        return light < 0 || light >= count ? 0 : depths[size_t(light)];
    }
    // The middle of three, so that one light makes no run.
    double calmDepth(int light) const
    {
        const double a = depthAt(std::max(light - 1, 0));
        const double b = depthAt(light);
        const double c = depthAt(std::min(light + 1, count - 1));
        return std::max(std::min(a, b), std::min(std::max(a, b), c));
    }
    std::vector<Run> runs() const;
    double deepest(const Run &run) const;
    Side side(const Run &run, double deepestDepth, double near, int step) const;
    std::optional<Stretch> judgeRun(const Run &run) const;
    bool isStraight(int first, int last, bool falls) const;
    bool isBoard(int first, int last, double depth) const;

    Axis axis;
    int count;
    const Thresholds &thresholds;
    double spread; // of healthy lights, a share
    double edge;   // depth at which a run ends
    double seed;   // depth that makes a run
    std::vector<double> depths;
};

std::vector<Run> Finder::runs() const
{
    std::vector<Run> found;
    int i = 0;
    while (i < count) {
        if (calmDepth(i) < seed) {
            ++i;
            continue;
        }
        Run run{i, i};
        const int least = found.empty() ? 0 : found.back().last + 1;
        while (run.first > least && depthAt(run.first - 1) > edge)
            --run.first;
        while (run.last + 1 < count && depthAt(run.last + 1) > edge)
            ++run.last;
        found.push_back(run);
        i = run.last + 1;
    }
    return found;
}

double Finder::deepest(const Run &run) const
{
    std::vector<double> all(depths.begin() + run.first, depths.begin() + run.last + 1);
    std::sort(all.begin(), all.end(), std::greater<>());
    all.resize(std::max<size_t>(1, all.size() / 4));
    return robust::mean(all);
}

Side Finder::side(const Run &run, double deepestDepth, double near, int step) const
{
    const int begin = step > 0 ? run.first : run.last;
    const int end = step > 0 ? run.last : run.first;
    const auto goOut = [&](int from, double part) {
        while (from != begin && depthAt(from - step) >= part * deepestDepth)
            from -= step;
        return from;
    };
    // Between lights the depth is taken to grow evenly.
    const auto crossing = [&](int inner, double part) {
        const double before = depthAt(inner - step);
        const double after = depthAt(inner);
        return after > before ? (part * deepestDepth - before) / (after - before) : 1.0;
    };
    Side side;
    int deep = begin;
    while (deep != end && depthAt(deep) < (1 - near) * deepestDepth)
        deep += step;
    side.half = goOut(deep, HalfDeep);
    side.shallow = goOut(deep, Shallow);
    const int nearNone = goOut(deep, near);
    const bool atEnd = nearNone - step < 0 || nearNone - step >= count;
    side.open = atEnd;
    if (atEnd && deep == begin)
        return side;
    side.rise = std::abs(deep - nearNone) + crossing(deep, 1 - near);
    if (!atEnd)
        side.rise -= crossing(nearNone, near);
    return side;
}

// Whether the depth grows evenly towards the last light, or towards the first if the level rises.
bool Finder::isStraight(int first, int last, bool falls) const
{
    // Least squares with a parabola; its powers are orthogonal to each other on -1 to 1.
    double slope = 0;
    double bend = 0;
    double slopes = 0;
    double bends = 0;
    const int length = last - first + 1;
    const double mean = (length + 1.0) / (3.0 * (length - 1)); // of s squared
    for (int i = first; i <= last; ++i) {
        const double along = 2.0 * (i - first) / (length - 1) - 1;
        const double s = falls ? along : -along;
        slope += s * depthAt(i);
        slopes += s * s;
        bend += (s * s - mean) * depthAt(i);
        bends += (s * s - mean) * (s * s - mean);
    }
    slope /= slopes;
    bend /= bends;
    return slope > 0 && slope + 2 * bend >= LeastStraight * (slope - 2 * bend);
}

// All lights of a board fail alike, and boards follow each other from one end of the axis on.
bool Finder::isBoard(int first, int last, double depth) const
{
    const int length = last - first + 1;
    if (length < thresholds.boardLights || length >= count)
        return false;
    for (const auto &[inner, outer] : {std::pair(first, first - 1), std::pair(last, last + 1)}) {
        if (depthAt(inner) < (1 - Alike) * depth || depthAt(outer) > Alike * depth)
            return false;
    }
    const bool usual = std::find(BoardSizes.begin(), BoardSizes.end(), length) != BoardSizes.end();
    const bool dark = depth >= Dark;
    return (first % length == 0 && (usual || (dark && first > 0))) ||
           ((count - 1 - last) % length == 0 && usual && dark);
}

std::optional<Stretch> Finder::judgeRun(const Run &run) const
{
    const double depth = deepest(run);
    const double near = std::clamp(NearSpreads * spread / depth, NearAtBest, NearAtWorst);
    const Side left = side(run, depth, near, 1);
    const Side right = side(run, depth, near, -1);
    const int whole = right.shallow - left.shallow + 1;
    // A step has one light at most that is covered in part: half at worst.
    const double limit = 2 - 4 * near + thresholds.stepRise + thresholds.stepRiseShare * whole;
    const double slopePart = SlopePart * (1 - 2 * near) / (1 - near);
    const double wide = std::min(thresholds.wideStepRise, thresholds.wideStepShare * whole);
    const double stepLimit = std::max(limit, wide);
    const auto isStep = [stepLimit](const Side &side) { return side.rise <= stepLimit; };
    const auto isSlope = [&](const Side &side) { return side.rise >= slopePart * whole; };
    Stretch stretch{.axis = axis,
                    .first = left.shallow,
                    .last = right.shallow,
                    .depth = std::clamp(depth, 0.0, 1.0)};
    double margin = 0; // of the shape, in lights
    if (isStep(left) && isStep(right)) {
        stretch.first = left.half;
        stretch.last = right.half;
        stretch.verdict = isBoard(stretch.first, stretch.last, depth) ? StretchVerdict::BrokenBoard
                                                                      : StretchVerdict::Obstacle;
        margin = stepLimit - std::max(left.rise, right.rise);
    } else if (whole >= thresholds.barLights &&
               ((isStep(left) && isSlope(right)) || (isStep(right) && isSlope(left))) &&
               isStraight(left.shallow, right.shallow, isStep(right))) {
        stretch.verdict = StretchVerdict::BarOutOfLine;
        stretch.slope = isStep(left) ? depth : -depth;
        margin = std::max(left.rise, right.rise) / whole - slopePart;
    } else {
        stretch.verdict = StretchVerdict::Dirt;
        margin = std::max(left.rise, right.rise) - stepLimit;
    }
    const int least = depth >= Dark ? thresholds.darkLights : thresholds.stretchLights;
    if (stretch.last - stretch.first + 1 < least)
        return {};
    stretch.confidence = 1 - 0.5 * std::exp(-4 * margin) - 0.5 * std::exp(-2 * depth / seed);
    stretch.confidence = std::clamp(stretch.confidence, 0.0, 1.0);
    return stretch;
}

} // namespace

std::vector<Stretch> findStretches(Axis axis, const std::vector<double> &shares, double spread,
                                   const Thresholds &thresholds)
{
    return Finder(axis, shares, spread, thresholds).find();
}

} // namespace lights
