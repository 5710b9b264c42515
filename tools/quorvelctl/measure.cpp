#include "measure.h"

#include "lights/judge.h"
#include "lights/scancollector.h"
#include "questions.h"
#include "scan.h"
#include "session.h"
#include "words.h"

namespace settings = command::settings;

namespace ctl {

namespace {

// Dead lights are asked whether somebody has switched them off; of more than this many nobody has.
constexpr int MostAsked = 40;

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
    const lights::Verdicts verdicts = judge(measurement, thresholds);
    int asked = 0;
    for (const lights::Axis axis : lights::Axes) {
        lights::AxisMeasurement &measured = measurement.axis(axis);
        measured.off.assign(size_t(measured.lights), false);
        for (int i = 0; i < measured.lights && asked < MostAsked; ++i) {
            if (verdicts.axis(axis).lights[size_t(i)].verdict != lights::LightVerdict::Dead)
                continue;
            ++asked;
            measured.off[size_t(i)] =
                askLight(session, {.sub = settings::GetLight, .light = {numberOf(axis), i}}).off;
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
