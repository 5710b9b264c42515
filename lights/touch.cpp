// SPDX-License-Identifier: GPL-3.0-or-later

#include "touch.h"

#include "text.h"
#include "words.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace lights {

namespace {

// How finely an axis is looked at.
constexpr int StepsPerLight = 16;
// Lights between two jumps that count as one, and what is too narrow to be met.
constexpr double ClosestJumps = 1;
constexpr double NarrowestJump = 0.2;

// One axis, as a controller sees it with certain readings.
class Shadows
{
public:
    Shadows(std::vector<double> theReadings, double theWidth, const TouchModel &theModel)
        : readings(std::move(theReadings))
        , width(theWidth)
        , model(theModel)
    {
    }

    // Where a finger is seen whose middle is at a place; in lights.
    std::optional<double> seen(double place) const
    {
        const int count = int(readings.size());
        const double from = place - width / 2;
        const double to = place + width / 2;
        double sum = 0;
        double weights = 0;
        for (int i = std::max(0, int(std::floor(from))); i < count && i < to; ++i) {
            const double covered = std::min(to, i + 1.0) - std::max(from, double(i));
            const double missing = readings[size_t(i)] * covered;
            const bool isEdge = i == 0 || i == count - 1;
            if (missing < (isEdge ? model.edgeThreshold : model.threshold))
                continue;
            sum += missing * (i + 0.5);
            weights += missing;
        }
        return weights > 0 ? std::optional(sum / weights) : std::nullopt;
    }

private:
    std::vector<double> readings;
    double width; // of a finger, lights
    const TouchModel &model;
};

// Jumps that lie close together are one place for whoever touches there; touches that are missed
// are told exactly.
void append(std::vector<TouchFault> &faults, const TouchFault &step)
{
    const double gap = step.kind == TouchFault::Kind::Jumps ? ClosestJumps : 0;
    if (!faults.empty() && faults.back().kind == step.kind && faults.back().axis == step.axis &&
        step.from - faults.back().to <= gap) {
        faults.back().to = step.to;
        faults.back().by = std::max(faults.back().by, step.by);
    } else {
        faults.push_back(step);
    }
}

} // namespace

std::vector<TouchFault> touchFaults(const Measurement &measurement, const Verdicts &verdicts,
                                    const TouchModel &model)
{
    std::vector<TouchFault> faults;
    for (const Axis axis : Axes) {
        const AxisMeasurement &measured = measurement.axis(axis);
        const std::vector<Light> &lights = verdicts.axis(axis).lights;
        std::vector<double> is;
        std::vector<double> shouldBe;
        for (const Light &light : lights) {
            is.push_back(light.level * ReadingPerLevel);
            shouldBe.push_back(std::max(light.level, light.expected) * ReadingPerLevel);
        }
        const double width = measured.pitch ? model.fingerMm / *measured.pitch : model.fingerLights;
        const Shadows now(std::move(is), width, model);
        const Shadows healthy(std::move(shouldBe), width, model);
        for (int step = 0; step < int(lights.size()) * StepsPerLight; ++step) {
            const double place = (step + 0.5) / StepsPerLight;
            const std::optional<double> right = healthy.seen(place);
            if (!right)
                continue;
            const std::optional<double> seen = now.seen(place);
            const double off = seen ? std::abs(*seen - *right) : 0;
            if (seen && off <= model.jump)
                continue;
            append(faults, {.kind = seen ? TouchFault::Kind::Jumps : TouchFault::Kind::Missed,
                            .axis = axis,
                            .from = double(step) / StepsPerLight,
                            .to = double(step + 1) / StepsPerLight,
                            .by = off});
        }
    }
    std::erase_if(faults, [](const TouchFault &fault) {
        return fault.kind == TouchFault::Kind::Jumps && fault.to - fault.from < NarrowestJump;
    });
    return faults;
}

QRectF areaOf(const TouchFault &fault, const AxisMeasurement &measured)
{
    const double from = fault.from / measured.lights;
    const double length = (fault.to - fault.from) / measured.lights;
    return fault.axis == Axis::X ? QRectF(from, 0, length, 1) : QRectF(0, from, 1, length);
}

QString wordsFor(const TouchFault &fault, const AxisMeasurement &measured)
{
    const bool isX = fault.axis == Axis::X;
    const bool isMissed = fault.kind == TouchFault::Kind::Missed;
    if (!measured.pitch) {
        const QString first = lightName(fault.axis, int(fault.from));
        const QString last = lightName(fault.axis, int(std::ceil(fault.to)) - 1);
        const bool isOne = first == last;
        if (isMissed)
            return isOne ? Text::tr("Touches at light %1 are missed.").arg(first)
                         : Text::tr("Touches at lights %1 to %2 are missed.").arg(first, last);
        const QString by = oneDecimal(fault.by);
        return isOne ? Text::tr("Touches at light %1 jump by up to %2 lights.").arg(first, by)
                     : Text::tr("Touches at lights %1 to %2 jump by up to %3 lights.")
                           .arg(first, last, by);
    }
    const int from = int(std::floor(fault.from * *measured.pitch));
    const int to = int(std::ceil(fault.to * *measured.pitch));
    if (isMissed) {
        return (isX ? Text::tr("Touches between %1 and %2 mm from the left are missed.")
                    : Text::tr("Touches between %1 and %2 mm from the top are missed."))
            .arg(from)
            .arg(to);
    }
    return (isX ? Text::tr("Touches between %1 and %2 mm from the left jump by up to %3 mm.")
                : Text::tr("Touches between %1 and %2 mm from the top jump by up to %3 mm."))
        .arg(from)
        .arg(to)
        .arg(int(std::ceil(fault.by * *measured.pitch)));
}

} // namespace lights
