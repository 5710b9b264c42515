// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lightmaker.h"

#include <functional>

// How often the verdicts on made-up frames are right.
namespace evaluation {

inline constexpr int MainFrames = 2000;
inline constexpr unsigned MainSeed = 1000001;
inline constexpr int Kinds = 6; // of lights
inline constexpr int Stretches = 4;

extern const char *const LightWords[Kinds];
extern const char *const StretchWords[Stretches];

// What the verdicts of a set of frames were.
struct Tally
{
    int frames = 0;
    long lights[Kinds + 1][Kinds] = {}; // truth by verdict; the last truth: healthy, in a stretch
    long stretches[Stretches + 1][Stretches + 1] = {}; // truth by verdict; the last: none
    long sure[5][2] = {}; // stretches by tenths of confidence from a half on: all, right

    // Shares.
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

// Judges frames made by the recipe with seeds from the first on. With details it prints each
// mistake.
Tally evaluate(const maker::Recipe &recipe, int frames, unsigned firstSeed, bool details);
// The same for frames that somebody else makes of seeds.
Tally evaluate(const std::function<maker::Made(unsigned seed)> &make, int frames,
               unsigned firstSeed, bool details);

// Whether the bars hold that the verdicts have to clear.
bool holds(const Tally &tally);

} // namespace evaluation
