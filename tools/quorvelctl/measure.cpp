// SPDX-License-Identifier: GPL-3.0-or-later

#include "measure.h"

#include "lights/measuring.h"
#include "questions.h"
#include "scan.h"
#include "session.h"
#include "words.h"

namespace settings = command::settings;

namespace ctl {

namespace {

UCHAR numberOf(lights::Axis axis)
{
    return axis == lights::Axis::X ? settings::AxisX : settings::AxisY;
}

void addScan(lights::AxisMeasurement &axis, const Levels &levels)
{
    axis.scans.emplace_back(levels.levels.begin(), levels.levels.end());
    axis.gains.resize(levels.gains.size());
    // The mean of all scans by now.
    const auto scans = float(axis.scans.size());
    for (size_t i = 0; i < levels.gains.size(); ++i)
        axis.gains[i] += (float(levels.gains[i]) - axis.gains[i]) / scans;
}

void askDeadLights(Session &session, lights::Measurement &measurement,
                   const lights::Thresholds &thresholds)
{
    const auto names = lightsToAsk(measurement, thresholds);
    for (const lights::Axis axis : lights::Axes) {
        lights::AxisMeasurement &measured = measurement.axis(axis);
        measured.off.assign(size_t(measured.lights), false);
        for (const command::LightName &name : names) {
            if (name.axis == numberOf(axis))
                measured.off[size_t(name.number)] =
                    askLight(session, {.sub = settings::GetLight, .light = name}).off;
        }
    }
}

} // namespace

lights::Measurement measure(Session &session, int scans, const lights::Thresholds &thresholds)
{
    lights::Measurement measurement;
    if (!session.isSerial() && session.isCurrentGeneration())
        measurement.unit.identification = lights::identificationOf(askFirmware(session));
    const command::LightCounts counts = askAdc(session).counts;
    if (counts.x == 0 && counts.y == 0)
        throw Failure(Failed, Words::tr("The touch frame says that it has no lights."));
    measurement.x.lights = counts.x;
    measurement.y.lights = counts.y;
    for (int scan = 0; scan < scans; ++scan) {
        for (const lights::Axis axis : lights::Axes) {
            lights::AxisMeasurement &measured = measurement.axis(axis);
            if (measured.lights > 0)
                addScan(measured, scanAxis(session, numberOf(axis), measured.lights, true));
        }
    }
    askDeadLights(session, measurement, thresholds);
    measurement.date = QDateTime::currentDateTimeUtc();
    return measurement;
}

} // namespace ctl
