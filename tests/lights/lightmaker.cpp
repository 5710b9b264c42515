// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightmaker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace maker {

using lights::Axis;
using lights::LightVerdict;
using lights::StretchVerdict;

namespace {

// The distributions of the standard library give other numbers elsewhere.
class Dice
{
public:
    explicit Dice(unsigned seed)
        : engine(seed)
    {
    }

    double between(double low, double high) { return low + (high - low) * unit(); }
    int whole(int low, int high) { return low + int(unit() * (high - low + 1)); }
    bool chance(double share) { return unit() < share; }
    double normal()
    {
        const double radius = std::sqrt(-2 * std::log(1 - unit()));
        return radius * std::cos(2 * std::numbers::pi * unit());
    }
    template <typename T>
    T pick(const std::vector<T> &from)
    {
        return from[size_t(whole(0, int(from.size()) - 1))];
    }

private:
    double unit() { return engine() / 4294967296.0; }

    std::mt19937 engine;
};

// One axis while it is being made.
struct Strip
{
    Axis axis;
    int count;
    std::vector<double> level; // what a light would read at its gain
    std::vector<double> noise; // standard deviation
    std::vector<double> gain;
    std::vector<TrueLight> truth;
    std::vector<bool> taken; // by a stretch
    int coveredLights = 0;
};

double baseAt(Base shape, double place, double amount, int fromEnd, double phase)
{
    switch (shape) {
    case Base::Any:
    case Base::Flat:
        break;
    case Base::Droop:
        return 1 - amount * place * place;
    case Base::Quartic:
        return 1 - amount * std::pow(place, 4);
    case Base::RollOff:
        return 1 - 1.2 * amount * std::exp(-fromEnd / 1.5);
    case Base::Wave:
        return 1 - amount * place * place +
               amount / 5 * std::sin(phase + place * 2 * std::numbers::pi);
    }
    return 1;
}

Strip makeStrip(const Recipe &recipe, Dice &dice, Axis axis, int count)
{
    Strip strip{axis,
                count,
                {},
                {},
                {},
                std::vector<TrueLight>(size_t(count)),
                std::vector<bool>(size_t(count), false)};
    const double middle = dice.between(recipe.minLevel, recipe.maxLevel);
    const double noise = dice.between(recipe.minNoise, recipe.maxNoise);
    const double spread = dice.between(0, recipe.maxSpread);
    const double alternation = dice.between(0, recipe.maxAlternation);
    const double amount = dice.between(0, 0.22);
    const double phase = dice.between(0, 6);
    const Base shape =
        recipe.base != Base::Any
            ? recipe.base
            : dice.pick<Base>({Base::Flat, Base::Droop, Base::Droop, Base::Quartic, Base::Wave});
    for (int i = 0; i < count; ++i) {
        const double place = 2.0 * i / (count - 1) - 1;
        double level = middle * baseAt(shape, place, amount, std::min(i, count - 1 - i), phase);
        level *= 1 + spread * std::clamp(dice.normal(), -3.0, 3.0);
        level *= i % 2 ? 1 + alternation / 2 : 1 - alternation / 2;
        // A controller sets its gain so that no healthy light is cut off.
        strip.level.push_back(std::min(level, 242.0));
        strip.noise.push_back(noise);
        strip.gain.push_back(48 + std::lround(20 * place * place));
    }
    return strip;
}

double dipAt(Dip shape, double distance) // in half widths, the sign tells the side
{
    const double away = std::abs(distance);
    switch (shape) {
    case Dip::Gauss:
        return std::exp(-std::numbers::ln2 * distance * distance);
    case Dip::RaisedCosine:
        return away < 2 ? 0.5 + 0.5 * std::cos(std::numbers::pi * away / 2) : 0;
    case Dip::Triangle:
        return std::max(0.0, 1 - away / 2);
    case Dip::FlatTop:
        return std::exp(-std::numbers::ln2 * std::pow(distance, 4));
    case Dip::Lopsided:
        return std::exp(-std::numbers::ln2 * std::pow(distance / (distance < 0 ? 0.7 : 1.3), 2));
    }
    return 0;
}

// Takes lights first to last for a stretch; false where there is no room.
bool take(Strip &strip, int first, int last)
{
    const int from = std::max(0, first - 3);
    const int to = std::min(strip.count - 1, last + 3);
    if (first < 0 || last >= strip.count)
        return false;
    // Half of an axis stays free: nobody asks what a frame is like of which little is left.
    if (strip.coveredLights + last - first + 1 > strip.count / 2)
        return false;
    for (int i = from; i <= to; ++i) {
        if (strip.taken[size_t(i)])
            return false;
    }
    for (int i = first; i <= last; ++i) {
        strip.taken[size_t(i)] = true;
        strip.truth[size_t(i)].covered = true;
    }
    strip.coveredLights += last - first + 1;
    return true;
}

void addDirt(const Recipe &recipe, Dice &dice, Strip &strip, std::vector<TrueStretch> &stretches)
{
    const double half = dice.between(2.5, std::clamp(strip.count / 14.0, 3.0, 16.0));
    const double depth = dice.between(0.22, 0.75);
    const double centre = dice.between(0, strip.count - 1);
    const Dip shape = dice.pick(recipe.dips);
    const int reach = int(std::ceil(half * 2.2));
    const int first = std::max(0, int(centre) - reach);
    const int last = std::min(strip.count - 1, int(centre) + 1 + reach);
    if (!take(strip, first, last))
        return;
    for (int i = first; i <= last; ++i)
        strip.level[size_t(i)] *= 1 - depth * dipAt(shape, (i - centre) / half);
    stretches.push_back({StretchVerdict::Dirt, strip.axis,
                         std::max(first, int(std::ceil(centre - half))),
                         std::min(last, int(std::floor(centre + half)))});
}

void addObstacle(Dice &dice, Strip &strip, std::vector<TrueStretch> &stretches)
{
    const int length = dice.whole(4, std::clamp(strip.count / 8, 5, 30));
    const int first = dice.whole(0, strip.count - length);
    const int last = first + length - 1;
    if (!take(strip, first, last))
        return;
    const double depth = dice.between(0.3, 0.98);
    for (int i = first; i <= last; ++i)
        strip.level[size_t(i)] *= 1 - depth;
    // The outermost lights may be covered in part only.
    for (const int end : {first, last})
        strip.level[size_t(end)] *= 1 + dice.between(0, 0.5) * depth / (1 - depth);
    stretches.push_back({StretchVerdict::Obstacle, strip.axis, first, last});
}

void addBoard(Dice &dice, Strip &strip, int size, std::vector<TrueStretch> &stretches)
{
    if (size * 3 > strip.count)
        return;
    const int board = dice.whole(0, (strip.count + size - 1) / size - 1);
    const int first = board * size;
    const int last = std::min(first + size, strip.count) - 1;
    if (last - first + 1 < size || !take(strip, first, last))
        return;
    const double left = dice.chance(0.7) ? 0 : dice.between(0.2, 0.6);
    for (int i = first; i <= last; ++i) {
        strip.level[size_t(i)] *= left;
        if (left == 0)
            strip.truth[size_t(i)].verdict = LightVerdict::Dead;
    }
    stretches.push_back({StretchVerdict::BrokenBoard, strip.axis, first, last});
}

// A bar that is out of line along the whole axis.
void addTilt(Dice &dice, Strip &strip, std::vector<TrueStretch> &stretches)
{
    const double slope = dice.between(0.18, 0.45) * (dice.chance(0.5) ? 1 : -1);
    for (int i = 0; i < strip.count; ++i) {
        const double along = double(i) / (strip.count - 1);
        strip.level[size_t(i)] *= 1 - std::abs(slope) * (slope > 0 ? along : 1 - along);
    }
    stretches.push_back({StretchVerdict::BarOutOfLine, strip.axis, 0, strip.count - 1});
}

// One piece of a bar that is.
void addRamp(Dice &dice, Strip &strip, std::vector<TrueStretch> &stretches)
{
    const int length = dice.whole(14, std::clamp(strip.count / 5, 14, 60));
    const int first = dice.whole(0, std::max(0, strip.count - length));
    const int last = first + length - 1;
    if (length * 3 > strip.count || !take(strip, first, last))
        return;
    const double depth = dice.between(0.3, 0.6);
    const bool falls = dice.chance(0.5);
    for (int i = first; i <= last; ++i) {
        const double along = (i - first + 1.0) / length;
        strip.level[size_t(i)] *= 1 - depth * (falls ? along : 1 + 1.0 / length - along);
    }
    stretches.push_back({StretchVerdict::BarOutOfLine, strip.axis, first, last});
}

bool isBesideStretch(const Strip &strip, int light)
{
    for (int i = std::max(0, light - 2); i <= std::min(strip.count - 1, light + 2); ++i) {
        if (strip.taken[size_t(i)])
            return true;
    }
    return false;
}

// Faults of single lights, one beside the other only by chance and never three in a row.
void addOdd(Dice &dice, Strip &strip, LightVerdict verdict, bool telling)
{
    const int i = dice.whole(0, strip.count - 1);
    TrueLight &light = strip.truth[size_t(i)];
    const auto isOdd = [&strip](int number) {
        return number >= 0 && number < strip.count &&
               strip.truth[size_t(number)].verdict != LightVerdict::Healthy;
    };
    // Nothing tells a weak light that touches a stretch from the stretch's own edge.
    if (light.covered || isBesideStretch(strip, i) || isOdd(i) ||
        (isOdd(i - 1) && (isOdd(i - 2) || isOdd(i + 1))) || (isOdd(i + 1) && isOdd(i + 2)))
        return;
    light.verdict = verdict;
    double &level = strip.level[size_t(i)];
    switch (verdict) {
    case LightVerdict::Weak:
        // Where the frame tells its gains it may have hidden the weakness behind one.
        if (telling && dice.chance(0.3))
            strip.gain[size_t(i)] *= dice.between(1.6, 3);
        else
            level *= dice.between(0.2, 0.75);
        break;
    case LightVerdict::Dead:
    case LightVerdict::SwitchedOff:
        level = 0;
        break;
    case LightVerdict::Noisy:
        strip.noise[size_t(i)] = strip.noise[size_t(i)] * dice.between(5, 12) + 3;
        break;
    case LightVerdict::Saturated:
        level = dice.between(256, 400);
        break;
    case LightVerdict::Healthy:
        break;
    }
}

lights::AxisMeasurement scan(const Recipe &recipe, Dice &dice, const Strip &strip, int scans,
                             bool telling)
{
    lights::AxisMeasurement measured;
    measured.lights = strip.count;
    const double drift = dice.between(-recipe.maxDrift, recipe.maxDrift);
    const double lean = dice.between(-recipe.maxDrift, recipe.maxDrift) / 2;
    const bool bell = dice.chance(0.5);
    for (int s = 0; s < scans; ++s) {
        const double time = scans > 1 ? double(s) / (scans - 1) : 0;
        // The controller turns the gain of all lights together now and then.
        const double turn = 1 + 0.01 * dice.whole(-1, 1);
        lights::Scan levels;
        for (int i = 0; i < strip.count; ++i) {
            const auto at = size_t(i);
            const double place = 2.0 * i / (strip.count - 1) - 1;
            const double noise =
                strip.noise[at] * (bell ? dice.normal() : dice.between(-1.732, 1.732));
            double level = strip.level[at] * turn * (1 + time * (drift + lean * place)) + noise;
            if (strip.level[at] == 0)
                level = std::min(std::abs(noise), 3.0);
            if (strip.truth[at].verdict == LightVerdict::SwitchedOff)
                level = 0;
            levels.push_back(float(std::floor(std::clamp(level, 0.0, 255.0))));
        }
        measured.scans.push_back(std::move(levels));
    }
    if (telling) {
        for (const double gain : strip.gain)
            measured.gains.push_back(float(std::min(255.0, std::round(gain))));
    }
    for (const TrueLight &light : strip.truth)
        measured.off.push_back(light.verdict == LightVerdict::SwitchedOff);
    return measured;
}

int someSize(Dice &dice, int low, int high)
{
    return int(std::lround(low * std::pow(double(high) / low, dice.between(0, 1))));
}

} // namespace

Made make(const Recipe &recipe, unsigned seed)
{
    Dice dice(seed * 2654435761U + 12345);
    std::array<Strip, 2> strips{
        makeStrip(recipe, dice, Axis::X, someSize(dice, recipe.minX, recipe.maxX)),
        makeStrip(recipe, dice, Axis::Y, someSize(dice, recipe.minY, recipe.maxY))};
    const bool telling = recipe.gains && dice.chance(0.5);
    const int boardSize = dice.pick<int>({8, 12, 16, 16, 20, 24, 32});
    Made made;
    const auto some = [&dice, &strips]() -> Strip & {
        const int all = strips[0].count + strips[1].count;
        return strips[dice.whole(0, all - 1) < strips[0].count ? 0 : 1];
    };
    const auto times = [&dice, &recipe](const auto &add) {
        for (int n = dice.whole(0, recipe.maxFaults); n > 0; --n)
            add();
    };
    times([&] { addBoard(dice, some(), boardSize, made.stretches); });
    if (recipe.bars) {
        for (Strip &strip : strips) {
            if (dice.chance(0.2))
                addTilt(dice, strip, made.stretches);
        }
        for (int n = dice.whole(0, recipe.maxFaults / 4); n > 0; --n)
            addRamp(dice, some(), made.stretches);
    }
    times([&] { addDirt(recipe, dice, some(), made.stretches); });
    times([&] { addObstacle(dice, some(), made.stretches); });
    for (const LightVerdict verdict : {LightVerdict::Weak, LightVerdict::Dead, LightVerdict::Noisy,
                                       LightVerdict::Saturated, LightVerdict::SwitchedOff})
        times([&] { addOdd(dice, some(), verdict, telling); });

    const int scans = dice.whole(recipe.minScans, recipe.maxScans);
    made.measurement.x = scan(recipe, dice, strips[0], scans, telling);
    made.measurement.y = scan(recipe, dice, strips[1], scans, telling);
    made.x = strips[0].truth;
    made.y = strips[1].truth;
    return made;
}

} // namespace maker
