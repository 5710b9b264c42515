// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QString>

#include <optional>

namespace lights {

// The limits that verdicts go by; docs/light-lab.md derives each. How a curve is fitted or a rise
// is measured is no limit: such numbers stand beside what uses them.
//
// Shares are of the level that a healthy light at the same place would have.
struct Thresholds
{
    Q_DECLARE_TR_FUNCTIONS(lights::Thresholds)

public:
    // Lights.
    double deadLevel = 8;         // levels: no more light than this is none
    double deadShare = 0.07;      // likewise, where healthy lights are high
    double weakShare = 0.18;      // a light that lies so far below its neighbours is weak
    double weakSpreads = 5;       // and so many spreads of healthy lights below them
    double touchLevel = 37.5;     // levels: below this no shadow is deep enough to be seen
    double noisyRatio = 2.2;      // noise over that of a usual light
    double noisyLevel = 2;        // levels: less noise than this is never called noisy
    double noisyChance = 2e-5;    // of a healthy light to be called so, in few scans
    double saturatedLevel = 254;  // levels: a reading that says no more than "this or above"
    double saturatedShare = 0.5;  // of a light's readings that say so
    double nearlySaturated = 248; // levels: likewise, if its neighbours are lower
    double compensatedGain = 1.3; // gain over the neighbours' that hides a weak light

    // Stretches.
    double stretchDepth = 0.12;  // of the deepest place
    double stretchEdge = 0.05;   // a stretch ends where it is this shallow
    int stretchLights = 3;       // a stretch is at least so long
    int darkLights = 4;          // likewise where no light comes through at all
    double stepRise = 0.12;      // lights by which a step may rise more slowly than one can
    double stepRiseShare = 0.02; // and this share of the stretch's length
    double wideStepRise = 3;     // lights by which an edge may rise where beams are wide,
    double wideStepShare = 0.25; // if it is no more than this share of the stretch's length
    double barSlope = 0.12;      // change along a whole axis
    int barLights = 8;           // a slope within an axis is at least so long
    int boardLights = 8;         // a board has at least so many

    bool operator==(const Thresholds &) const = default;

    // Reads a JSON object of "format", "version" and any of the names above. Returns nothing for a
    // text that is no such thing, and tells file and reason in problem.
    static std::optional<Thresholds> parse(const QByteArray &text, const QString &file,
                                           QString *problem);
    static std::optional<Thresholds> load(const QString &path, QString *problem);
    // A file that holds every name, to be changed by hand.
    QByteArray toJson() const;
};

} // namespace lights
