// SPDX-License-Identifier: GPL-3.0-or-later

#include "judge.h"

#include "basecurve.h"
#include "robust.h"
#include "rolloff.h"
#include "stretchfinder.h"
#include "typical.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace lights {

namespace {

// Gains that differ more than this from light to light are no measure of how weak a light is.
constexpr double GainSpread = 0.05;
// A light is only weak if it differs by this much of a healthy one: in the dark of an obstacle
// small differences are large shares.
constexpr double LeastDrop = 0.06;
// Neighbours that differ so much stand on two sides of a step.
constexpr double LeastStep = 0.15;
// Neighbours that differ more stand on two sides of something else.
constexpr double MostAlternation = 0.3;
// A dead light among such makes them a dark place.
constexpr double HalfDark = 0.6;
// A dip whose flanks descend so much from light to light may well go on at its bottom.
constexpr double FlankStep = 0.04;
constexpr int MostLoose = 4;
// Parts of an axis that healthy lights span.
constexpr double LeastSupport = 0.5;
constexpr double LeastGain = 0.05;
constexpr double FullSupport = 0.9;
constexpr double ExcessMargin = 1.1;
// Noise of this many levels is finer than whole levels tell.
constexpr double FinestNoise = 0.3;
// By how many spreads of the healthy lights' noise a noisy light stands out, and how far that goes.
constexpr double NoiseSpreads = 3.3;
constexpr double MostTails = 2.8;

// A light of which the level says how its place is.
bool isUnremarkable(const Light &light)
{
    return light.verdict == LightVerdict::Healthy || light.compensated;
}

double confidenceOf(double margin)
{
    return margin <= 0 ? 0.5 : 1 - 0.5 * std::exp(-margin);
}

// The work on one axis, in the order of the functions.
class AxisJudge
{
public:
    AxisJudge(Axis theAxis, const AxisMeasurement &theMeasured, const Thresholds &theThresholds)
        : axis(theAxis)
        , measured(theMeasured)
        , thresholds(theThresholds)
        , usual(typical(theMeasured, theThresholds))
    {
        verdict.lights.resize(size_t(measured.lights));
    }

    void judgeAlone();
    void findBase();
    // How the first lights of an end stand to the curve, the outermost first; NaN: unknown.
    std::vector<double> endShares(bool atLast) const;
    void allowRollOff(const std::vector<double> &first, const std::vector<double> &last);
    void finish(Verdicts &verdicts);
    int rollOffLights() const { return std::min(RollOffLights, count() / RollOffPart); }

private:
    int count() const { return measured.lights; }
    bool isPlain(int light) const
    {
        const LightVerdict is = verdict.lights[size_t(light)].verdict;
        return (is == LightVerdict::Healthy || is == LightVerdict::Weak) &&
               !std::isnan(usual.level[size_t(light)]);
    }
    void mark(int light, LightVerdict is, double confidence)
    {
        verdict.lights[size_t(light)].verdict = is;
        verdict.lights[size_t(light)].confidence = confidence;
    }
    void judgeBesideNeighbours();
    std::vector<Stretch> judgeStretches();
    void judgeNoise();
    void findAlternation();
    void takeGains();
    std::vector<double> filled() const;
    bool isLoose(const std::vector<int> &plain, int from, int to) const;
    bool isRollOff(const Stretch &stretch, const std::vector<double> &whole) const;

    Axis axis;
    const AxisMeasurement &measured;
    const Thresholds &thresholds;
    AxisVerdict verdict;
    Typical usual;
    BaseCurve base;
    std::vector<double> shares; // of the expected level, at the gain of the neighbours
    std::vector<int> hidden;    // lights of a gain far above their neighbours'
    double spread = 0;          // of healthy lights, a share
};

// What a light's own readings tell.
void AxisJudge::judgeAlone()
{
    for (int i = 0; i < count(); ++i) {
        const auto at = size_t(i);
        verdict.lights[at].level = std::isnan(usual.level[at]) ? 0 : usual.level[at];
        if (!measured.off.empty() && measured.off[at])
            mark(i, LightVerdict::SwitchedOff, 1);
        else if (usual.level[at] <= thresholds.deadLevel)
            mark(i, LightVerdict::Dead, confidenceOf(thresholds.deadLevel - usual.level[at] + 1));
        else if (usual.saturated[at] >= thresholds.saturatedShare)
            mark(i, LightVerdict::Saturated, confidenceOf(4 * usual.saturated[at]));
    }
    judgeNoise();
}

void AxisJudge::judgeNoise()
{
    verdict.noiseKnown = usual.scans > 1;
    if (!verdict.noiseKnown)
        return;
    std::vector<double> all;
    for (int i = 0; i < count(); ++i) {
        verdict.lights[size_t(i)].noise = usual.noise[size_t(i)];
        if (isPlain(i))
            all.push_back(usual.noise[size_t(i)]);
    }
    verdict.noise = robust::median(all);
    // Noise with long tails is more uneven from light to light than the normal kind.
    std::vector<double> uneven;
    uneven.reserve(all.size());
    for (const double noise : all)
        uneven.push_back(std::log(std::max(noise, FinestNoise)));
    const double tails = std::exp(NoiseSpreads * robust::spread(uneven));
    const double ratio =
        std::max({thresholds.noisyRatio, std::min(tails, MostTails),
                  ExcessMargin * robust::deviationExcess(usual.scans, thresholds.noisyChance)});
    const double limit =
        std::max(thresholds.noisyLevel, ratio * std::max(verdict.noise, FinestNoise));
    for (int i = 0; i < count(); ++i) {
        const double noise = usual.noise[size_t(i)];
        // A light that comes and goes is neither dead nor saturated whatever it does mostly.
        const LightVerdict so = verdict.lights[size_t(i)].verdict;
        const bool flickers = so != LightVerdict::SwitchedOff && noise > 2 * limit;
        if (noise > limit && (isPlain(i) || flickers))
            mark(i, LightVerdict::Noisy, confidenceOf(4 * std::log(noise / limit)));
    }
}

void AxisJudge::findBase()
{
    findAlternation();
    std::vector<double> levels(size_t(count()), std::nan(""));
    for (int i = 0; i < count(); ++i) {
        if (isPlain(i))
            levels[size_t(i)] =
                usual.level[size_t(i)] / (1 + verdict.alternation * (i % 2 ? 0.5 : -0.5));
    }
    base = baseCurve(levels);
    shares.assign(size_t(count()), std::nan(""));
    if (base.level.empty())
        return;
    for (int i = 0; i < count(); ++i)
        shares[size_t(i)] = levels[size_t(i)] / base.level[size_t(i)];
    takeGains();
}

// Senders often take turns, and those of one bar can be a little stronger than those of the other.
void AxisJudge::findAlternation()
{
    std::vector<double> differences[2]; // a slope counts one way in these, the other way in those
    for (int i = 0; i + 1 < count(); ++i) {
        if (!isPlain(i) || !isPlain(i + 1))
            continue;
        const double step = std::log(usual.level[size_t(i) + 1]) - std::log(usual.level[size_t(i)]);
        if (std::abs(step) < MostAlternation)
            differences[i % 2].push_back(i % 2 ? -step : step);
    }
    if (!differences[0].empty() && !differences[1].empty())
        verdict.alternation = (robust::median(differences[0]) + robust::median(differences[1])) / 2;
}

// A controller that turns a light's gain up hides that it is weak.
void AxisJudge::takeGains()
{
    if (measured.gains.empty())
        return;
    std::vector<double> inverse(size_t(count()), std::nan(""));
    for (int i = 0; i < count(); ++i) {
        if (isPlain(i) && measured.gains[size_t(i)] > 0)
            inverse[size_t(i)] = 1 / double(measured.gains[size_t(i)]);
    }
    const BaseCurve curve = baseCurve(inverse);
    if (curve.level.empty())
        return;
    for (size_t i = 0; i < inverse.size(); ++i)
        inverse[i] /= curve.level[i];
    if (robust::spread(inverse) > GainSpread)
        return;
    const auto isTurnedUp = [&](int i) {
        return i >= 0 && i < count() && inverse[size_t(i)] * thresholds.compensatedGain < 1;
    };
    for (int i = 0; i < count(); ++i) {
        if (!isTurnedUp(i))
            continue;
        const int around =
            isTurnedUp(i - 2) + isTurnedUp(i - 1) + isTurnedUp(i + 1) + isTurnedUp(i + 2);
        if (around >= thresholds.stretchLights - 1)
            shares[size_t(i)] *= inverse[size_t(i)];
        else
            hidden.push_back(i);
    }
}

std::vector<double> AxisJudge::endShares(bool atLast) const
{
    std::vector<double> end;
    end.reserve(RollOffLights);
    for (int k = 0; k < RollOffLights; ++k)
        end.push_back(k < rollOffLights() ? shares[size_t(atLast ? count() - 1 - k : k)]
                                          : std::nan(""));
    return end;
}

void AxisJudge::allowRollOff(const std::vector<double> &first, const std::vector<double> &last)
{
    for (int k = 0; k < rollOffLights(); ++k) {
        for (const auto &[place, allowed] :
             {std::pair(k, first[size_t(k)]), std::pair(count() - 1 - k, last[size_t(k)])}) {
            if (!base.level.empty())
                base.level[size_t(place)] *= allowed;
            shares[size_t(place)] /= allowed;
        }
    }
}

// A few lights that are no stretch: no three of them lie side by side, nor four with dead ones.
bool AxisJudge::isLoose(const std::vector<int> &plain, int from, int to) const
{
    const auto isOne = [&](int i) {
        return std::binary_search(plain.begin() + from, plain.begin() + to + 1, i);
    };
    const auto isDead = [this](int i) {
        return verdict.lights[size_t(i)].verdict == LightVerdict::Dead;
    };
    const auto isDim = [&](int i) {
        return isOne(i) || isDead(i) || (isPlain(i) && shares[size_t(i)] < HalfDark);
    };
    int first = plain[size_t(from)];
    int last = plain[size_t(to)];
    while (first > 0 && isDim(first - 1))
        --first;
    while (last + 1 < count() && isDim(last + 1))
        ++last;
    int ones = 0; // side by side
    int dims = 0;
    bool dead = false;
    for (int i = first; i <= last; ++i) {
        ones = isOne(i) ? ones + 1 : 0;
        dims = isDim(i) ? dims + 1 : 0;
        dead = dims > 0 && (dead || isDead(i));
        if (ones >= thresholds.stretchLights || (dead && dims >= thresholds.darkLights))
            return false;
    }
    return true;
}

// A light that is darker than those on both of its sides, alone or with one neighbour.
void AxisJudge::judgeBesideNeighbours()
{
    std::vector<int> plain;
    for (int i = 0; i < count(); ++i) {
        if (!isPlain(i) || std::isnan(shares[size_t(i)]))
            continue;
        const double expected = base.level[size_t(i)];
        if (usual.level[size_t(i)] <= thresholds.deadShare * expected)
            mark(i, LightVerdict::Dead, confidenceOf(1));
        else if (usual.level[size_t(i)] >= thresholds.nearlySaturated &&
                 shares[size_t(i)] > 1 + LeastDrop)
            mark(i, LightVerdict::Saturated, confidenceOf(1));
        else
            plain.push_back(i);
    }
    const int usable = int(plain.size());
    const auto share = [&](int p) { return shares[size_t(plain[size_t(p)])]; };
    std::vector<double> roughness;
    for (int p = 1; p + 1 < usable; ++p) {
        if (std::min({share(p - 1), share(p), share(p + 1)}) > 1 - thresholds.stretchDepth)
            roughness.push_back(share(p) - (share(p - 1) + share(p + 1)) / 2);
    }
    spread = robust::spread(roughness) / std::sqrt(1.5);
    const double weakShare = std::max(thresholds.weakShare, thresholds.weakSpreads * spread);

    for (const int light : hidden) {
        if (isPlain(light)) {
            mark(light, LightVerdict::Weak, 1);
            verdict.lights[size_t(light)].compensated = true;
        }
    }

    // What a light between these would be like; the numbers are of the outermost two of a group.
    const auto reference = [&](int from, int to) -> std::optional<double> {
        const bool hasLeft = from > 0;
        const bool hasRight = to + 1 < usable;
        if (!hasLeft || !hasRight) {
            if (!hasLeft && !hasRight)
                return {};
            return hasLeft ? share(from - 1) : share(to + 1);
        }
        const double near = std::min(share(from - 1), share(to + 1));
        if (from < 2 || to + 2 >= usable)
            return near;
        const double flank =
            std::min(share(from - 2) - share(from - 1), share(to + 2) - share(to + 1));
        return flank > FlankStep ? near - flank : near;
    };
    const auto margin = [&](int p, std::optional<double> beside) {
        return beside ? *beside - std::max(weakShare * *beside, LeastDrop) - share(p) : -1.0;
    };
    const auto markWeak = [&](int p, double by) {
        const int light = plain[size_t(p)];
        mark(light, LightVerdict::Weak, confidenceOf(by / std::max(spread, 0.01)));
    };
    for (int from = 0; from < usable; ++from) {
        for (int to = from; to < std::min(from + MostLoose, usable); ++to) {
            const std::optional<double> beside = reference(from, to);
            double by = 1;
            for (int p = from; p <= to; ++p)
                by = std::min(by, margin(p, beside));
            if (by <= 0 || !isLoose(plain, from, to))
                continue;
            for (int p = from; p <= to; ++p)
                markWeak(p, by);
        }
    }
}

// Shares in which single lights are as their neighbours are.
std::vector<double> AxisJudge::filled() const
{
    std::vector<double> whole(size_t(count()), std::nan(""));
    const auto isDark = [this](int i) {
        const Light &light = verdict.lights[size_t(i)];
        return light.verdict == LightVerdict::Dead ||
               (light.verdict == LightVerdict::Healthy && shares[size_t(i)] < HalfDark);
    };
    int dark = 0;
    for (int i = 0; i <= count(); ++i) {
        if (i < count() && isDark(i)) {
            ++dark;
            continue;
        }
        for (int j = i - dark; j < i && dark >= thresholds.darkLights; ++j) {
            if (verdict.lights[size_t(j)].verdict == LightVerdict::Dead)
                whole[size_t(j)] = 0;
        }
        dark = 0;
    }
    for (int i = 0; i < count(); ++i) {
        if (isUnremarkable(verdict.lights[size_t(i)]))
            whole[size_t(i)] = shares[size_t(i)];
    }
    int before = -1;
    for (int i = 0; i <= count(); ++i) {
        if (i < count() && std::isnan(whole[size_t(i)]))
            continue;
        for (int j = before + 1; j < i; ++j) {
            const double left =
                before < 0 ? (i < count() ? whole[size_t(i)] : 1) : whole[size_t(before)];
            const double right = i < count() ? whole[size_t(i)] : left;
            // Beside a step it is taken to stand on the upper side.
            whole[size_t(j)] = std::abs(left - right) > LeastStep
                                   ? std::max(left, right)
                                   : std::lerp(left, right, double(j - before) / (i - before));
        }
        before = i;
    }
    return whole;
}

// Of an end whose opposite tells nothing.
bool AxisJudge::isRollOff(const Stretch &stretch, const std::vector<double> &whole) const
{
    const int length = stretch.last - stretch.first + 1;
    if ((stretch.first > 0 && stretch.last + 1 < count()) || length > RollOffLights / 2)
        return false;
    for (int k = 0; k < length; ++k) {
        const double share = whole[size_t(stretch.first == 0 ? k : count() - 1 - k)];
        if (share < 1 - RollOffMost[size_t(k)])
            return false;
    }
    return true;
}

std::vector<Stretch> AxisJudge::judgeStretches()
{
    const std::vector<double> whole = filled();
    std::vector<Stretch> found = findStretches(axis, whole, spread, thresholds);
    std::erase_if(found, [&](const Stretch &stretch) { return isRollOff(stretch, whole); });
    const double slope = std::abs(base.slope);
    // The less of the axis is healthy, the less is a slope along it to be trusted.
    if (base.slopeSupport > LeastSupport && base.slopeGain > LeastGain &&
        slope * base.slopeSupport * base.slopeSupport >= thresholds.barSlope * FullSupport) {
        found.insert(found.begin(),
                     {.verdict = StretchVerdict::BarOutOfLine,
                      .axis = axis,
                      .first = 0,
                      .last = count() - 1,
                      .depth = base.slope < 0 ? -base.slope : 1 - 1 / (1 + base.slope),
                      .slope = base.slope,
                      .confidence = confidenceOf(8 * (slope / thresholds.barSlope - 1))});
    }
    for (int i = 0; i < count(); ++i) {
        Light &light = verdict.lights[size_t(i)];
        light.expected = base.level[size_t(i)];
        const bool isCovered = std::any_of(found.begin(), found.end(), [&](const Stretch &s) {
            return i >= s.first && i <= s.last && s.last - s.first + 1 < count();
        });
        if (isPlain(i) && light.level < thresholds.touchLevel && !isCovered)
            mark(i, LightVerdict::Weak, confidenceOf(thresholds.touchLevel - light.level));
        if (light.verdict == LightVerdict::Healthy)
            light.confidence = 1;
    }
    return found;
}

void AxisJudge::finish(Verdicts &verdicts)
{
    if (!base.level.empty()) {
        judgeBesideNeighbours();
        const std::vector<Stretch> found = judgeStretches();
        for (const Stretch &stretch : found) {
            for (int i = stretch.first; i <= stretch.last; ++i)
                verdict.lights[size_t(i)].stretch = int(verdicts.stretches.size());
            verdicts.stretches.push_back(stretch);
        }
    }
    verdicts.axis(axis) = std::move(verdict);
}

} // namespace

Verdicts judge(const Measurement &measurement, const Thresholds &thresholds)
{
    Verdicts verdicts;
    std::vector<AxisJudge> judges;
    for (const Axis axis : Axes) {
        const AxisMeasurement &measured = measurement.axis(axis);
        if (measured.lights == 0 || measured.scans.empty())
            continue;
        AxisJudge &one = judges.emplace_back(axis, measured, thresholds);
        one.judgeAlone();
        one.findBase();
    }
    std::vector<std::vector<double>> ends;
    for (const AxisJudge &one : judges) {
        ends.push_back(one.endShares(false));
        ends.push_back(one.endShares(true));
    }
    for (size_t j = 0; j < judges.size(); ++j) {
        const std::vector<double> none(RollOffLights, std::nan(""));
        const auto end = [&](size_t axis, size_t which) {
            return axis < judges.size() ? ends[2 * axis + which] : none;
        };
        judges[j].allowRollOff(rollOff({end(j, 0), end(j, 1), end(1 - j, 0), end(1 - j, 1)}),
                               rollOff({end(j, 1), end(j, 0), end(1 - j, 1), end(1 - j, 0)}));
    }
    for (AxisJudge &one : judges)
        one.finish(verdicts);
    return verdicts;
}

} // namespace lights
