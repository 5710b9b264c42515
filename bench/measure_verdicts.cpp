// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/commands.h"
#include "figure.h"
#include "lights/judge.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <vector>

using namespace lights;

namespace {

using Clock = std::chrono::steady_clock;
using Ms = std::chrono::duration<double, std::milli>;

constexpr int Rounds = 100;
constexpr int Scans = 16;
constexpr double BarMs = 5;

double shareOf(int light, bool faulty)
{
    if (!faulty)
        return 1;
    const int place = light % 100;
    if (place == 7)
        return 0;
    if (place == 11)
        return 0.6;
    if (place >= 20 && place < 28)
        return 0.4;
    const double fromDirt = (place - 60) / 6.0;
    return 1 - 0.5 * std::exp(-fromDirt * fromDirt);
}

AxisMeasurement axisOf(int lights, bool faulty, std::minstd_rand &numbers)
{
    AxisMeasurement axis;
    axis.lights = lights;
    for (int scan = 0; scan < Scans; ++scan) {
        Scan levels;
        for (int i = 0; i < lights; ++i) {
            const double place = 2.0 * i / (lights - 1) - 1;
            const double noise = double(numbers() % 7) - 3;
            const double level = 220 * (1 - 0.1 * place * place) * shareOf(i, faulty) + noise;
            levels.push_back(float(std::round(std::max(level, 0.0))));
        }
        axis.scans.push_back(levels);
    }
    axis.gains.assign(size_t(lights), 48);
    return axis;
}

Figure timed(const char *name, bool faulty)
{
    std::minstd_rand numbers(1);
    Measurement frame;
    frame.x = axisOf(command::MaxLightsX, faulty, numbers);
    frame.y = axisOf(command::MaxLightsY, faulty, numbers);
    Figure figure{name, BarMs, Figure::HeldBy::Median, {}};
    for (int round = 0; round < Rounds; ++round) {
        const auto begin = Clock::now();
        const Verdicts verdicts = judge(frame);
        figure.samples.push_back(Ms(Clock::now() - begin).count());
        if (verdicts.isPass() == faulty)
            figure.samples.clear(); // then nothing was measured
    }
    return figure;
}

} // namespace

// measure_verdicts: how long the verdicts on a measurement of the largest frame take. Prints lines
// of the table; the exit code is 0 when the bar holds.
int main()
{
    const bool healthy = print(timed("verdicts on 500 and 350 healthy lights, ms", false));
    return print(timed("verdicts on 500 and 350 lights with faults, ms", true)) && healthy ? 0 : 1;
}
