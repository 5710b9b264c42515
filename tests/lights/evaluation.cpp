// SPDX-License-Identifier: GPL-3.0-or-later

#include "evaluation.h"

#include "lights/judge.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace evaluation {

using namespace lights;

const char *const LightWords[Kinds] = {"healthy", "weak",      "dead",
                                       "noisy",   "saturated", "switched off"};
const char *const StretchWords[Stretches] = {"dirt", "obstacle", "bar out of line", "broken board"};

namespace {

int overlap(int first, int last, int otherFirst, int otherLast)
{
    return std::max(0, std::min(last, otherLast) - std::max(first, otherFirst) + 1);
}

// A true stretch is found by the one that shares the most lights with it, at least half of those
// that either has.
void compareStretches(const maker::Made &made, const Verdicts &verdicts, Tally &tally,
                      unsigned seed, bool details)
{
    std::vector<bool> touched(verdicts.stretches.size(), false);
    for (const maker::TrueStretch &truth : made.stretches) {
        const Stretch *best = nullptr;
        double most = 0.5;
        for (size_t s = 0; s < verdicts.stretches.size(); ++s) {
            const Stretch &found = verdicts.stretches[s];
            const int common = overlap(truth.first, truth.last, found.first, found.last);
            const bool whole = truth.last - truth.first + 1 == int(made.truth(truth.axis).size());
            const bool foundWhole =
                found.last - found.first + 1 == int(made.truth(found.axis).size());
            if (found.axis != truth.axis || common == 0 || whole != foundWhole)
                continue;
            touched[s] = true;
            const int either = truth.last - truth.first + found.last - found.first + 2 - common;
            if (double(common) / either >= most) {
                most = double(common) / either;
                best = &found;
            }
        }
        ++tally.stretches[int(truth.verdict)][best ? int(best->verdict) : Stretches];
        if (best) {
            const int bin = std::clamp(int((best->confidence - 0.5) * 10), 0, 4);
            ++tally.sure[bin][0];
            tally.sure[bin][1] += best->verdict == truth.verdict;
        }
        if (details && (!best || best->verdict != truth.verdict)) {
            std::printf("seed %u: %s %c %d-%d of %zu taken for %s", seed,
                        StretchWords[int(truth.verdict)], truth.axis == Axis::X ? 'X' : 'Y',
                        truth.first, truth.last, made.truth(truth.axis).size(),
                        best ? StretchWords[int(best->verdict)] : "nothing");
            if (best)
                std::printf(" %d-%d depth %.2f", best->first, best->last, best->depth);
            std::printf("\n");
        }
    }
    for (size_t s = 0; s < verdicts.stretches.size(); ++s) {
        if (touched[s])
            continue;
        const Stretch &found = verdicts.stretches[s];
        ++tally.stretches[Stretches][int(found.verdict)];
        if (details)
            std::printf("seed %u: false %s %c %d-%d depth %.2f slope %.2f\n", seed,
                        StretchWords[int(found.verdict)], found.axis == Axis::X ? 'X' : 'Y',
                        found.first, found.last, found.depth, found.slope);
    }
}

void compareLights(const maker::Made &made, const Verdicts &verdicts, Tally &tally, unsigned seed,
                   bool details)
{
    for (const Axis axis : Axes) {
        const std::vector<maker::TrueLight> &truth = made.truth(axis);
        for (size_t i = 0; i < truth.size(); ++i) {
            const Light &light = verdicts.axis(axis).lights[i];
            const bool plainCover = truth[i].covered && truth[i].verdict == LightVerdict::Healthy;
            const int kind = plainCover ? Kinds : int(truth[i].verdict);
            ++tally.lights[kind][int(light.verdict)];
            if (details && !plainCover && truth[i].verdict != light.verdict)
                std::printf(
                    "seed %u: %s %c%zu of %zu taken for %s, level %.1f of %.1f noise %.1f\n", seed,
                    LightWords[int(truth[i].verdict)], axis == Axis::X ? 'X' : 'Y', i, truth.size(),
                    LightWords[int(light.verdict)], light.level, light.expected, light.noise);
        }
    }
}

} // namespace

Tally evaluate(const maker::Recipe &recipe, int frames, unsigned firstSeed, bool details)
{
    return evaluate([&recipe](unsigned seed) { return maker::make(recipe, seed); }, frames,
                    firstSeed, details);
}

Tally evaluate(const std::function<maker::Made(unsigned seed)> &make, int frames,
               unsigned firstSeed, bool details)
{
    Tally tally;
    tally.frames = frames;
    for (int f = 0; f < frames; ++f) {
        const unsigned seed = firstSeed + unsigned(f);
        const maker::Made made = make(seed);
        const Verdicts verdicts = judge(made.measurement);
        compareLights(made, verdicts, tally, seed, details);
        compareStretches(made, verdicts, tally, seed, details);
    }
    return tally;
}

bool holds(const Tally &tally)
{
    bool good = true;
    for (const LightVerdict kind : {LightVerdict::Dead, LightVerdict::SwitchedOff})
        good = good && tally.lightsFound(int(kind)) == 1;
    for (const LightVerdict kind :
         {LightVerdict::Weak, LightVerdict::Noisy, LightVerdict::Saturated})
        good = good && tally.lightsFound(int(kind)) >= 0.99 && tally.falseLights(int(kind)) <= 1e-4;
    for (int kind = 0; kind < Stretches; ++kind)
        good = good && tally.stretchesFound(kind) >= 0.95;
    return good && tally.falseStretches() <= 1.0 / 200;
}

} // namespace evaluation
