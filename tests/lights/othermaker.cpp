// SPDX-License-Identifier: GPL-3.0-or-later

#include "othermaker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace maker {

using namespace lights;

namespace {

constexpr int Scans = 16;
constexpr int Gap = 5;         // lights between two stretches
constexpr int FromStretch = 4; // lights between a stretch and a light with a fault of its own
constexpr int MostStretches = 3;
constexpr int MostLights = 3; // of each kind, on an axis

class Numbers
{
public:
    explicit Numbers(unsigned seed)
        : engine(seed)
    {
    }
    // The library's distributions differ from machine to machine.
    double upTo(double most) { return most * double(engine()) / double(std::mt19937::max()); }
    double between(double least, double most) { return least + upTo(most - least); }
    int whole(int least, int most) { return least + int(engine() % unsigned(most - least + 1)); }
    bool oneIn(int n) { return whole(1, n) == 1; }
    // Of both signs and with long tails.
    double tailed(double deviation)
    {
        const double part = between(-0.4999, 0.4999);
        const double far = -std::log(1 - 2 * std::abs(part));
        return (part < 0 ? -far : far) * deviation / std::sqrt(2);
    }

private:
    std::mt19937 engine;
};

struct Line
{
    std::vector<double> share; // of its level that a stretch leaves each light
    std::vector<bool> taken;   // a stretch, and its surroundings
};

class Frame
{
public:
    explicit Frame(unsigned seed)
        : numbers(seed)
    {
    }

    Made make()
    {
        const int sizes[] = {numbers.whole(48, 400), numbers.whole(32, 280)};
        for (const Axis axis : Axes) {
            const int count = sizes[axis == Axis::X ? 0 : 1];
            made.measurement.axis(axis).lights = count;
            truth(axis).resize(size_t(count));
            Line &line = lineOf(axis);
            line.share.assign(size_t(count), 1);
            line.taken.assign(size_t(count), false);
        }
        addObstacles();
        for (const Axis axis : Axes) {
            const int stretches = numbers.whole(0, MostStretches);
            for (int i = 0; i < stretches; ++i)
                addStretch(axis);
        }
        for (const Axis axis : Axes)
            scan(axis);
        std::sort(made.stretches.begin(), made.stretches.end(),
                  [](const TrueStretch &a, const TrueStretch &b) {
                      return std::pair(a.axis, a.first) < std::pair(b.axis, b.first);
                  });
        return std::move(made);
    }

private:
    std::vector<TrueLight> &truth(Axis axis) { return axis == Axis::X ? made.x : made.y; }
    Line &lineOf(Axis axis) { return axis == Axis::X ? lineX : lineY; }
    int count(Axis axis) const { return made.measurement.axis(axis).lights; }

    bool take(Axis axis, int first, int last)
    {
        Line &line = lineOf(axis);
        if (first < 0 || last >= count(axis))
            return false;
        const int from = std::max(0, first - Gap);
        const int to = std::min(count(axis) - 1, last + Gap);
        if (std::any_of(line.taken.begin() + from, line.taken.begin() + to + 1,
                        [](bool one) { return one; }))
            return false;
        // Two thirds of an axis stay as they are.
        if (std::count(line.taken.begin(), line.taken.end(), true) + last - first > count(axis) / 3)
            return false;
        std::fill(line.taken.begin() + first, line.taken.begin() + last + 1, true);
        return true;
    }
    void enter(Axis axis, StretchVerdict verdict, int first, int last)
    {
        made.stretches.push_back({verdict, axis, first, last});
    }
    // Something with straight edges, which stand anywhere between two lights.
    void addObstacle(Axis axis, double depth)
    {
        const int length = numbers.whole(4, std::min(40, count(axis) / 6));
        const int first = numbers.whole(2, count(axis) - length - 3);
        if (!take(axis, first, first + length - 1))
            return;
        Line &line = lineOf(axis);
        for (int i = first; i < first + length; ++i)
            line.share[size_t(i)] = 1 - depth;
        // A beam is as wide as a light or wider, so an edge goes through one light or two.
        for (const int end : {first, first + length - 1}) {
            const int inwards = end == first ? 1 : -1;
            const bool isWide = length >= 10 && numbers.oneIn(3);
            line.share[size_t(end)] =
                1 - depth * numbers.between(isWide ? 0.3 : 0.55, isWide ? 0.6 : 1);
            if (isWide)
                line.share[size_t(end + inwards)] = 1 - depth * numbers.between(0.7, 1);
        }
        enter(axis, StretchVerdict::Obstacle, first, first + length - 1);
    }
    void addObstacles()
    {
        const int obstacles = numbers.whole(0, 2);
        for (int i = 0; i < obstacles; ++i) {
            const double depth = numbers.between(0.3, 0.95);
            const bool both = numbers.oneIn(2);
            const bool onX = numbers.oneIn(2);
            if (both || onX)
                addObstacle(Axis::X, depth);
            if (both || !onX)
                addObstacle(Axis::Y, depth);
        }
    }
    // One to three drops that run into each other, deepest in the middle.
    void addDirt(Axis axis)
    {
        const int length = numbers.whole(10, std::max(11, std::min(60, count(axis) / 5)));
        const int first = numbers.whole(0, count(axis) - length);
        if (!take(axis, first, first + length - 1))
            return;
        Line &line = lineOf(axis);
        const double depth = numbers.between(0.25, 0.8);
        const double lean = numbers.between(-0.15, 0.15);
        int from = count(axis);
        int to = -1;
        for (int i = first; i < first + length; ++i) {
            const double along = 2.0 * (i - first + 0.5) / length - 1; // -1 to 1
            const double bump = std::pow(std::cos(along * M_PI / 2), 2) * (1 + lean * along);
            line.share[size_t(i)] = 1 - depth * bump;
            if (bump >= 0.2) {
                from = std::min(from, i);
                to = i;
            }
        }
        enter(axis, StretchVerdict::Dirt, from, to);
    }
    void addBoard(Axis axis)
    {
        constexpr std::array Sizes{8, 16, 20, 24, 32};
        const int size = Sizes[size_t(numbers.whole(0, int(Sizes.size()) - 1))];
        const int boards = count(axis) / size;
        if (boards < 3)
            return;
        const int first = size * numbers.whole(0, boards - 1);
        if (!take(axis, first, first + size - 1))
            return;
        const double share = numbers.oneIn(2) ? 0 : numbers.between(0.1, 0.6);
        for (int i = first; i < first + size; ++i) {
            lineOf(axis).share[size_t(i)] = share;
            if (share == 0)
                truth(axis)[size_t(i)].verdict = LightVerdict::Dead;
        }
        enter(axis, StretchVerdict::BrokenBoard, first, first + size - 1);
    }
    // From nothing to its worst, where it ends at once.
    void addBar(Axis axis)
    {
        const int length = numbers.whole(12, std::max(13, count(axis) / 4));
        const int first = numbers.whole(2, std::max(2, count(axis) - length - 3));
        if (!take(axis, first, first + length - 1))
            return;
        const double depth = numbers.between(0.3, 0.7);
        const bool falls = numbers.oneIn(2);
        for (int k = 0; k < length; ++k) {
            const double part = double(falls ? k + 1 : length - k) / length;
            lineOf(axis).share[size_t(first + k)] = 1 - depth * part;
        }
        enter(axis, StretchVerdict::BarOutOfLine, first, first + length - 1);
    }
    void addStretch(Axis axis)
    {
        switch (numbers.whole(0, 2)) {
        case 0:
            return addDirt(axis);
        case 1:
            return addBoard(axis);
        default:
            return addBar(axis);
        }
    }

    void scan(Axis axis);

    Numbers numbers;
    Made made;
    Line lineX;
    Line lineY;
};

void Frame::scan(Axis axis)
{
    const int lights = count(axis);
    Line &line = lineOf(axis);
    std::vector<TrueLight> &all = truth(axis);
    const double level = numbers.between(110, 225);
    std::vector<double> joints(6);
    for (double &joint : joints)
        joint = numbers.between(0.93, 1);
    const double noise = numbers.between(0.4, 2);
    std::vector<double> mean(static_cast<size_t>(lights));
    std::vector<double> noises(static_cast<size_t>(lights), noise);
    std::vector<bool> off(static_cast<size_t>(lights), false);
    for (int i = 0; i < lights; ++i) {
        const double at = double(i) / lights * double(joints.size() - 1);
        const auto joint = size_t(at);
        const double shape = std::lerp(joints[joint], joints[joint + 1], at - double(joint));
        mean[size_t(i)] = level * shape * numbers.between(0.97, 1.03) * line.share[size_t(i)];
        all[size_t(i)].covered = line.taken[size_t(i)];
    }
    // Lights with a fault of their own, away from all else.
    std::set<int> used;
    const auto place = [&]() -> int {
        for (int tries = 0; tries < 40; ++tries) {
            const int at = numbers.whole(3, lights - 4);
            bool good = true;
            for (int k = at - FromStretch; k <= at + FromStretch; ++k)
                good =
                    good && !used.contains(k) && (k < 0 || k >= lights || !line.taken[size_t(k)]);
            if (good) {
                used.insert(at);
                return at;
            }
        }
        return -1;
    };
    for (const LightVerdict verdict : {LightVerdict::Weak, LightVerdict::Dead, LightVerdict::Noisy,
                                       LightVerdict::Saturated, LightVerdict::SwitchedOff}) {
        for (int n = numbers.whole(0, MostLights); n > 0; --n) {
            const int at = place();
            if (at < 0)
                continue;
            all[size_t(at)].verdict = verdict;
            if (verdict == LightVerdict::Weak)
                mean[size_t(at)] *= numbers.between(0.25, 0.7);
            else if (verdict == LightVerdict::Noisy)
                noises[size_t(at)] = std::max(6.0, noise * numbers.between(4, 8));
            else if (verdict == LightVerdict::Saturated)
                mean[size_t(at)] = 270;
            else
                mean[size_t(at)] = numbers.upTo(2);
            off[size_t(at)] = verdict == LightVerdict::SwitchedOff;
        }
    }
    AxisMeasurement &measured = made.measurement.axis(axis);
    measured.off = off;
    double drift = 1;
    for (int s = 0; s < Scans; ++s) {
        drift += numbers.tailed(0.004);
        Scan one;
        for (int i = 0; i < lights; ++i) {
            const double value = mean[size_t(i)] * drift + numbers.tailed(noises[size_t(i)]);
            one.push_back(float(std::clamp(std::floor(value + 0.5), 0.0, 255.0)));
        }
        measured.scans.push_back(std::move(one));
    }
}

} // namespace

Made makeOther(unsigned seed)
{
    return Frame(seed).make();
}

} // namespace maker
