// SPDX-License-Identifier: GPL-3.0-or-later

#include "evaluation.h"
#include "othermaker.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

using namespace evaluation;
using lights::LightVerdict;
using maker::Base;
using maker::Dip;
using maker::Recipe;

namespace {

constexpr int HoldOutFrames = 400;
constexpr unsigned HoldOutSeed = 2000001;
constexpr int OtherFrames = 1000;
constexpr unsigned OtherSeed = 4000001;
constexpr const char *OtherName = "a second generator, of other rules";

void printMatrices(const Tally &tally)
{
    std::printf("| lights, truth \\ verdict |");
    for (const char *word : LightWords)
        std::printf(" %s |", word);
    std::printf(" found |\n|---|--:|--:|--:|--:|--:|--:|--:|\n");
    for (int truth = 0; truth <= Kinds; ++truth) {
        std::printf("| %s |", truth == Kinds ? "healthy, in a stretch" : LightWords[truth]);
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
        std::printf("| %s |", truth == Stretches ? "nothing" : StretchWords[truth]);
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
    std::printf(
        "| frames | dead | off | weak | noisy | saturated | false alarms in 10,000 | dirt | "
        "obstacle | bar | board | false in 200 frames |\n"
        "|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n");
}

void printLine(const char *name, const Tally &tally, bool noiseKnown)
{
    std::printf("| %s |", name);
    for (const LightVerdict kind :
         {LightVerdict::Dead, LightVerdict::SwitchedOff, LightVerdict::Weak, LightVerdict::Noisy,
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
    add("no fault at all", [](Recipe &r) {
        r.maxFaults = 0;
        r.bars = false;
    });
    add("dips: triangles", [](Recipe &r) { r.dips = {Dip::Triangle}; });
    add("dips: flat tops", [](Recipe &r) { r.dips = {Dip::FlatTop}; });
    add("dips: lopsided", [](Recipe &r) { r.dips = {Dip::Lopsided}; });
    add("base: flat", [](Recipe &r) { r.base = Base::Flat; });
    add("base: drooping", [](Recipe &r) { r.base = Base::Droop; });
    add("base: fourth power", [](Recipe &r) { r.base = Base::Quartic; });
    add("base: ends fall off", [](Recipe &r) { r.base = Base::RollOff; });
    add("base: wavy", [](Recipe &r) { r.base = Base::Wave; });
    add("low levels, 80 to 120", [](Recipe &r) {
        r.minLevel = 80;
        r.maxLevel = 120;
    });
    add("high levels, 225 to 240", [](Recipe &r) {
        r.minLevel = 225;
        r.maxLevel = 240;
    });
    add("senders alternate by 15 %", [](Recipe &r) { r.maxAlternation = 0.15; });
    add("lights differ by 3 %", [](Recipe &r) { r.maxSpread = 0.03; });
    add("noise up to 5 levels", [](Recipe &r) { r.maxNoise = 5; });
    add("drift of 10 %", [](Recipe &r) { r.maxDrift = 0.1; });
    add("small frames, to 80 x 60", [](Recipe &r) {
        r.maxX = 80;
        r.maxY = 60;
    });
    add("large frames, from 300 x 200", [](Recipe &r) {
        r.minX = 300;
        r.minY = 200;
    });
    add("few faults, up to 3", [](Recipe &r) { r.maxFaults = 3; });
    add("4 scans", [](Recipe &r) { r.minScans = r.maxScans = 4; });
    add("1 scan", [](Recipe &r) { r.minScans = r.maxScans = 1; });
    return all;
}

} // namespace

// evaluate_lights [frames [set]]: prints the tables of docs/light-lab.md; the exit code is 0 when
// the bars hold. With a number of frames it judges only so many of the main set, or of the hold-out
// of that number, or of the second generator if that is "other", and tells of each mistake.
int main(int argc, char **argv)
{
    const Recipe main{.name = "the set that the bars are for"};
    if (argc > 2 && std::strcmp(argv[2], "other") == 0) {
        const Tally tally = evaluate(maker::makeOther, std::atoi(argv[1]), OtherSeed, true);
        printMatrices(tally);
        printHead();
        printLine(OtherName, tally, true);
        return 0;
    }
    if (argc > 1) {
        const Recipe recipe = argc > 2 ? holdOuts().at(size_t(std::atoi(argv[2]))) : main;
        const Tally tally =
            evaluate(recipe, std::atoi(argv[1]), argc > 2 ? HoldOutSeed : MainSeed, true);
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
        printLine(recipe.name, evaluate(recipe, HoldOutFrames, HoldOutSeed, false),
                  recipe.maxScans > 1);
    const Tally other = evaluate(maker::makeOther, OtherFrames, OtherSeed, false);
    printLine(OtherName, other, true);
    return holds(tally) && holds(other) ? 0 : 1;
}
