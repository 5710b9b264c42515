// SPDX-License-Identifier: GPL-3.0-or-later

#include "findings.h"

#include "text.h"
#include "words.h"

#include <QLocale>

#include <algorithm>

namespace lights {

namespace {

// What is dark because of its stretch gets its advice there.
bool isToldOf(const Report &report, const Light &light)
{
    if (light.verdict != LightVerdict::Dead || !light.stretch)
        return false;
    const StretchVerdict stretch = report.verdicts.stretches.at(size_t(*light.stretch)).verdict;
    return stretch == StretchVerdict::BrokenBoard || stretch == StretchVerdict::Obstacle;
}

} // namespace

std::vector<Finding> findingsOf(const Report &report)
{
    std::vector<Finding> all;
    for (const Stretch &stretch : report.verdicts.stretches) {
        all.push_back({stretch.axis, stretch.first, stretch.last,
                       Text::tr("%1 to %2: %3. %4")
                           .arg(lightName(stretch.axis, stretch.first),
                                lightName(stretch.axis, stretch.last), word(stretch.verdict),
                                advice(stretch, report.measurement.axis(stretch.axis)))});
    }
    for (const Axis axis : Axes) {
        const std::vector<Light> &lights = report.verdicts.axis(axis).lights;
        for (int i = 0; i < int(lights.size()); ++i) {
            const Light &light = lights[size_t(i)];
            if (light.verdict == LightVerdict::Healthy || isToldOf(report, light))
                continue;
            all.push_back({axis, i, i,
                           Text::tr("%1: %2. %3")
                               .arg(lightName(axis, i), word(light.verdict),
                                    advice(axis, i, light, report.measurement.axis(axis)))});
        }
    }
    return all;
}

std::vector<std::optional<Change>> changesOf(const Report &report, Axis axis)
{
    std::vector<std::optional<Change>> all(report.verdicts.axis(axis).lights.size());
    for (const Change &change : report.changes) {
        if (change.axis == axis && size_t(change.light) < all.size())
            all[size_t(change.light)] = change;
    }
    return all;
}

QString wordsFor(const Report &report, const LightPlace &place)
{
    const Light &light = report.verdicts.axis(place.axis).lights.at(size_t(place.number));
    const QString name = lightName(place.axis, place.number);
    const QString level = QString::number(qRound(light.level));
    const QString expected = QString::number(qRound(light.expected));
    const auto change =
        std::find_if(report.changes.begin(), report.changes.end(), [&place](const Change &one) {
            return one.axis == place.axis && one.light == place.number;
        });
    if (change == report.changes.end()) {
        return Text::tr("%1: %2, level %3 where %4 is usual")
            .arg(name, word(light.verdict), level, expected);
    }
    return Text::tr("%1: %2, level %3 where %4 is usual, changed by %5 %")
        .arg(name, word(light.verdict), level, expected,
             QLocale().toString(100 * change->alone, 'f', 1));
}

} // namespace lights
