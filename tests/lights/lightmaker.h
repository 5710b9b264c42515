// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lights/measurement.h"
#include "lights/verdict.h"

#include <random>
#include <vector>

// Makes up touch frames with known faults, and what scans of them say. It shares no code with what
// judges them: only the names of verdicts and the form of a measurement.
namespace maker {

enum class Dip { Gauss, RaisedCosine, Triangle, FlatTop, Lopsided };
enum class Base { Any, Flat, Droop, Quartic, RollOff, Wave };

// What is common to all frames of a set.
struct Recipe
{
    const char *name = "";
    int minX = 40, maxX = 500;
    int minY = 24, maxY = 350;
    int minScans = 16, maxScans = 16;
    double minLevel = 150, maxLevel = 230;
    Base base = Base::Any;
    std::vector<Dip> dips{Dip::Gauss, Dip::RaisedCosine};
    double maxAlternation = 0.08;        // share by which every other light differs
    double maxSpread = 0.02;             // standard deviation from light to light, a share
    double minNoise = 0.4, maxNoise = 3; // standard deviation of a scan, levels
    double maxDrift = 0.04;              // share over all scans
    bool gains = true;                   // the frame tells them, in half of the frames
    int maxFaults = 12;                  // of each kind, as far as there is room
    bool bars = true;
};

struct TrueLight
{
    lights::LightVerdict verdict = lights::LightVerdict::Healthy;
    bool covered = false; // lies in a stretch, its shoulders included
};

struct TrueStretch
{
    lights::StretchVerdict verdict;
    lights::Axis axis;
    int first;
    int last;
};

struct Made
{
    lights::Measurement measurement;
    std::vector<TrueLight> x;
    std::vector<TrueLight> y;
    std::vector<TrueStretch> stretches;

    const std::vector<TrueLight> &truth(lights::Axis axis) const
    {
        return axis == lights::Axis::X ? x : y;
    }
};

// The same recipe and seed give the same frame on every machine.
Made make(const Recipe &recipe, unsigned seed);

} // namespace maker
