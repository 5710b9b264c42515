#include "lightmaker.h"

#include "lights/judge.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

using namespace lights;
using maker::Base;
using maker::Dip;
using maker::Recipe;

namespace {

constexpr int MainFrames = 2000;
constexpr int HoldOutFrames = 400;
constexpr unsigned MainSeed = 1;
constexpr unsigned HoldOutSeed = 100001;
constexpr int Kinds = 6; // of lights
constexpr int Stretches = 4;

constexpr std::array LightWords{"healthy", "weak", "dead", "noisy", "saturated", "switched off"};
constexpr std::array StretchWords{"dirt", "obstacle", "bar out of line", "broken board"};

// What the verdicts of a set of frames were.
struct Tally
{
    int frames = 0;
    long lights[Kinds + 1][Kinds] = {}; // truth by verdict; the last truth: healthy, in a stretch
    long stretches[Stretches + 1][Stretches + 1] = {}; // truth by verdict; the last: none
    long sure[5][2] = {}; // stretches by tenths of confidence from a half on: all, right

    double lightsFound(int kind) const
    {
        long all = 0;
        for (const long judged : lights[kind])
            all += judged;
        return all == 0 ? 1 : double(lights[kind][kind]) / double(all);
    }
    // Of healthy lights outside of stretches.
    double falseLights(int kind) const
    {
        long all = 0;
        for (const long judged : lights[0])
            all += judged;
        return all == 0 ? 0 : double(lights[0][kind]) / double(all);
    }
    double lightPrecision(int kind) const
    {
        long all = 0;
        for (int truth = 0; truth < Kinds; ++truth)
            all += lights[truth][kind];
        return all == 0 ? 1 : double(lights[kind][kind]) / double(all);
    }
    double stretchesFound(int kind) const
    {
        long all = 0;
        for (const long judged : stretches[kind])
            all += judged;
        return all == 0 ? 1 : double(stretches[kind][kind]) / double(all);
    }
    double stretchPrecision(int kind) const
    {
        long all = 0;
        for (int truth = 0; truth <= Stretches; ++truth)
            all += stretches[truth][kind];
        return all == 0 ? 1 : double(stretches[kind][kind]) / double(all);
    }
    double falseStretches() const
    {
        long all = 0;
        for (int kind = 0; kind < Stretches; ++kind)
            all += stretches[Stretches][kind];
        return double(all) / frames;
    }
};

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
            const bool foundWhole = found.last - found.first + 1 == int(made.truth(found.axis).size());
            if (found.axis != truth.axis || common == 0 || whole != foundWhole)
                continue;
            touched[s] = true;
            const int either =
                truth.last - truth.first + found.last - found.first + 2 - common;
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
                        StretchWords[size_t(truth.verdict)], truth.axis == Axis::X ? 'X' : 'Y',
                        truth.first, truth.last, made.truth(truth.axis).size(),
                        best ? StretchWords[size_t(best->verdict)] : "nothing");
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
                        StretchWords[size_t(found.verdict)], found.axis == Axis::X ? 'X' : 'Y',
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
            const bool plainCover =
                truth[i].covered && truth[i].verdict == LightVerdict::Healthy;
            const int kind = plainCover ? Kinds : int(truth[i].verdict);
            ++tally.lights[kind][int(light.verdict)];
            if (details && !plainCover && truth[i].verdict != light.verdict)
                std::printf("seed %u: %s %c%zu of %zu taken for %s, level %.1f of %.1f noise %.1f\n",
                            seed, LightWords[size_t(truth[i].verdict)],
                            axis == Axis::X ? 'X' : 'Y', i, truth.size(),
                            LightWords[size_t(light.verdict)], light.level, light.expected,
                            light.noise);
        }
    }
}

Tally evaluate(const Recipe &recipe, int frames, unsigned firstSeed, bool details)
{
    Tally tally;
    tally.frames = frames;
    for (int f = 0; f < frames; ++f) {
        const unsigned seed = firstSeed + unsigned(f);
        const maker::Made made = maker::make(recipe, seed);
        const Verdicts verdicts = judge(made.measurement);
        compareLights(made, verdicts, tally, seed, details);
        compareStretches(made, verdicts, tally, seed, details);
    }
    return tally;
}

void printMatrices(const Tally &tally)
{
    std::printf("| lights, truth \\ verdict |");
    for (const char *word : LightWords)
        std::printf(" %s |", word);
    std::printf(" found |\n|---|--:|--:|--:|--:|--:|--:|--:|\n");
    for (int truth = 0; truth <= Kinds; ++truth) {
        std::printf("| %s |", truth == Kinds ? "healthy, in a stretch" : LightWords[size_t(truth)]);
        for (const long judged : tally.lights[truth])
            std::printf(" %ld |", judged);
        if (truth < Kinds)
            std::printf(" %.3f %% |\n", 100 * tally.lightsFound(truth));
        else
            std::printf(" |\n");
    }
    std::printf("| precision, without the last line |");
    for (int kind = 0; kind < Kinds; ++kind)
        std::printf(" %.3f %% |", 100 * tally.lightPrecision(kind));
    std::printf(" |\n\n| stretches, truth \\ verdict |");
    for (const char *word : StretchWords)
        std::printf(" %s |", word);
    std::printf(" nothing | found |\n|---|--:|--:|--:|--:|--:|--:|\n");
    for (int truth = 0; truth <= Stretches; ++truth) {
        std::printf("| %s |", truth == Stretches ? "nothing" : StretchWords[size_t(truth)]);
        for (int kind = 0; kind <= Stretches; ++kind) {
            if (truth == Stretches && kind == Stretches)
                std::printf(" |");
            else
                std::printf(" %ld |", tally.stretches[truth][kind]);
        }
        if (truth < Stretches)
            std::printf(" %.2f %% |\n", 100 * tally.stretchesFound(truth));
        else
            std::printf(" |\n");
    }
    std::printf("| precision |");
    for (int kind = 0; kind < Stretches; ++kind)
        std::printf(" %.2f %% |", 100 * tally.stretchPrecision(kind));
    std::printf(" | |\n\n| confidence of a stretch | how many | named right |\n|---|--:|--:|\n");
    for (int bin = 0; bin < 5; ++bin) {
        if (tally.sure[bin][0] > 0)
            std::printf("| %s0.%d to %s | %ld | %.1f %% |\n", bin == 0 ? "below or " : "", 5 + bin,
                        bin == 4 ? "1" : (std::array{"0.6", "0.7", "0.8", "0.9"})[size_t(bin)],
                        tally.sure[bin][0],
                        100.0 * double(tally.sure[bin][1]) / double(tally.sure[bin][0]));
    }
    std::printf("\n");
}

void printHead()
{
    std::printf("| frames | dead | off | weak | noisy | saturated | false alarms in 10,000 | dirt | "
                "obstacle | bar | board | false in 200 frames |\n"
                "|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n");
}

void printLine(const char *name, const Tally &tally, bool noiseKnown)
{
    std::printf("| %s |", name);
    for (const LightVerdict kind : {LightVerdict::Dead, LightVerdict::SwitchedOff,
                                    LightVerdict::Weak, LightVerdict::Noisy,
                                    LightVerdict::Saturated}) {
        if (kind == LightVerdict::Noisy && !noiseKnown)
            std::printf(" not told |");
        else
            std::printf(" %.2f |", 100 * tally.lightsFound(int(kind)));
    }
    double falseLights = 0;
    for (int kind = 1; kind < Kinds; ++kind)
        falseLights += tally.falseLights(kind);
    std::printf(" %.2f |", 10000 * falseLights);
    for (int kind = 0; kind < Stretches; ++kind)
        std::printf(" %.1f |", 100 * tally.stretchesFound(kind));
    std::printf(" %.2f |\n", 200 * tally.falseStretches());
    std::fflush(stdout);
}

// The bars of the main set.
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

// Frames unlike those that the thresholds were chosen with.
std::vector<Recipe> holdOuts()
{
    std::vector<Recipe> all;
    const auto add = [&all](const char *name, auto change) {
        Recipe recipe;
        recipe.name = name;
        change(recipe);
        all.push_back(recipe);
    };
    add("no fault at all", [](Recipe &r) { r.maxFaults = 0; r.bars = false; });
    add("dips: triangles", [](Recipe &r) { r.dips = {Dip::Triangle}; });
    add("dips: flat tops", [](Recipe &r) { r.dips = {Dip::FlatTop}; });
    add("dips: lopsided", [](Recipe &r) { r.dips = {Dip::Lopsided}; });
    add("base: flat", [](Recipe &r) { r.base = Base::Flat; });
    add("base: drooping", [](Recipe &r) { r.base = Base::Droop; });
    add("base: fourth power", [](Recipe &r) { r.base = Base::Quartic; });
    add("base: ends fall off", [](Recipe &r) { r.base = Base::RollOff; });
    add("base: wavy", [](Recipe &r) { r.base = Base::Wave; });
    add("low levels, 80 to 120", [](Recipe &r) { r.minLevel = 80; r.maxLevel = 120; });
    add("high levels, 225 to 240", [](Recipe &r) { r.minLevel = 225; r.maxLevel = 240; });
    add("senders alternate by 15 %", [](Recipe &r) { r.maxAlternation = 0.15; });
    add("lights differ by 3 %", [](Recipe &r) { r.maxSpread = 0.03; });
    add("noise up to 5 levels", [](Recipe &r) { r.maxNoise = 5; });
    add("drift of 10 %", [](Recipe &r) { r.maxDrift = 0.1; });
    add("small frames, to 80 x 60", [](Recipe &r) { r.maxX = 80; r.maxY = 60; });
    add("large frames, from 300 x 200", [](Recipe &r) { r.minX = 300; r.minY = 200; });
    add("few faults, up to 3", [](Recipe &r) { r.maxFaults = 3; });
    add("4 scans", [](Recipe &r) { r.minScans = r.maxScans = 4; });
    add("1 scan", [](Recipe &r) { r.minScans = r.maxScans = 1; });
    return all;
}

} // namespace

// evaluate_lights [frames [set]]: prints the tables of docs/light-lab.md; the exit code is 0 when
// the bars hold. With a number of frames it judges only so many of the main set, or of the hold-out
// of that number, and tells of each mistake.
int main(int argc, char **argv)
{
    const Recipe main{.name = "the set that the bars are for"};
    if (argc > 1) {
        const Recipe recipe = argc > 2 ? holdOuts().at(size_t(std::atoi(argv[2]))) : main;
        const Tally tally = evaluate(recipe, std::atoi(argv[1]), argc > 2 ? HoldOutSeed : MainSeed, true);
        printMatrices(tally);
        printHead();
        printLine(recipe.name, tally, recipe.maxScans > 1);
        return 0;
    }
    const Tally tally = evaluate(main, MainFrames, MainSeed, false);
    std::printf("%d frames of 40 x 24 to 500 x 350 lights, 16 scans each:\n\n", tally.frames);
    printMatrices(tally);
    std::printf("%d frames of each other kind; what was found and named right, in percent:\n\n",
                HoldOutFrames);
    printHead();
    printLine(main.name, tally, true);
    for (const Recipe &recipe : holdOuts())
        printLine(recipe.name, evaluate(recipe, HoldOutFrames, HoldOutSeed, false), recipe.maxScans > 1);
    return holds(tally) ? 0 : 1;
}
