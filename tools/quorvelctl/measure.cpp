#include "measure.h"

#include "questions.h"
#include "scan.h"
#include "session.h"

namespace settings = command::settings;

namespace ctl {

namespace {

UCHAR codeOf(lights::Axis axis)
{
    return axis == lights::Axis::X ? settings::AxisX : settings::AxisY;
}

// Reading each of some hundred lights would take longer than all scans.
std::vector<bool> switchedOff(Session &session, UCHAR axis, const std::vector<float> &levels)
{
    std::vector<bool> off(levels.size());
    for (size_t i = 0; i < levels.size(); ++i) {
        if (levels[i] <= 0)
            off[i] = askLight(session, {.sub = settings::GetLight, .light = {axis, int(i)}}).off;
    }
    return off;
}

} // namespace

lights::Measurement measure(Session &session, int scans)
{
    lights::Measurement measured;
    measured.date = QDateTime::currentDateTimeUtc();
    const command::LightCounts counts = askAdc(session).counts;
    measured.x.lights = counts.x;
    measured.y.lights = counts.y;
    for (const lights::Axis axis : lights::Axes)
        measured.axis(axis).gains.resize(size_t(measured.axis(axis).lights));
    for (int number = 0; number < scans; ++number) {
        for (const lights::Axis which : lights::Axes) {
            lights::AxisMeasurement &axis = measured.axis(which);
            const Levels levels = scanAxis(session, codeOf(which), axis.lights, true);
            axis.scans.emplace_back(levels.levels.begin(), levels.levels.end());
            for (size_t i = 0; i < levels.gains.size(); ++i)
                axis.gains[i] += float(levels.gains[i]) / float(scans);
        }
    }
    for (const lights::Axis which : lights::Axes) {
        lights::AxisMeasurement &axis = measured.axis(which);
        if (!axis.scans.empty())
            axis.off = switchedOff(session, codeOf(which), axis.scans.back());
    }
    return measured;
}

} // namespace ctl
