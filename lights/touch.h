// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "measurement.h"
#include "verdict.h"

#include <QRectF>
#include <QString>

#include <vector>

namespace lights {

// How a controller makes a touch of shadows. A light is shadowed when what a finger takes away of
// its reading is the threshold at least; a touch is seen where each axis has a shadowed light, in
// the middle of what is missing.
struct TouchModel
{
    double fingerMm = 8;        // width, where the pitch is known
    double fingerLights = 1.5;  // width, where it is not
    double threshold = 1000;    // of readings of 12 bits, as the controller is usually set
    double edgeThreshold = 600; // of the first and the last light
    double jump = 0.25;         // lights; a place that is wrong by more than this is told
};

// A strip of the screen where touches go wrong because of one axis: all are missed, or some jump.
struct TouchFault
{
    enum class Kind { Missed, Jumps };

    Kind kind = Kind::Missed;
    Axis axis = Axis::X;
    double from = 0; // lights: from 0 to the number of lights
    double to = 0;
    double by = 0; // Jumps: how far at most, in lights

    bool operator==(const TouchFault &) const = default;
};

// By axis and place. What a healthy light would do there is what counts as right.
std::vector<TouchFault> touchFaults(const Measurement &measurement, const Verdicts &verdicts,
                                    const TouchModel &model = {});

// The strip on the screen, all of which is 0,0 to 1,1.
QRectF areaOf(const TouchFault &fault, const AxisMeasurement &measured);

// One sentence, in millimetres if the pitch is known, else in lights.
QString wordsFor(const TouchFault &fault, const AxisMeasurement &measured);

} // namespace lights
