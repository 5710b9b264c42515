// SPDX-License-Identifier: GPL-3.0-or-later

#include "scancollector.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lights {

namespace {

Axis axisOf(UCHAR axis)
{
    return axis == command::scan::AxisX ? Axis::X : Axis::Y;
}

std::vector<float> meanOf(const std::deque<std::vector<int>> &all)
{
    std::vector<float> mean;
    for (size_t i = 0; !all.empty() && i < all.front().size(); ++i) {
        double sum = 0;
        for (const std::vector<int> &one : all)
            sum += one[i];
        mean.push_back(float(sum / double(all.size())));
    }
    return mean;
}

} // namespace

void ScanCollector::sent(const Frame &frame)
{
    using namespace command;
    last.reset();
    if (is(frame, command::Scan, scan::Counts))
        pairs = false;
    else if (is(frame, Settings, settings::GetAdc))
        pairs = true;
}

void ScanCollector::received(const Frame &frame)
{
    using namespace command;
    if (last == frame)
        return;
    last = frame;
    if (const auto counts = LightCounts::decode(frame)) {
        count(Axis::X, counts->x);
        count(Axis::Y, counts->y);
    } else if (const auto adc = AdcReport::decode(frame)) {
        count(Axis::X, adc->counts.x);
        count(Axis::Y, adc->counts.y);
    } else if (const auto page = ScanPage::decode(frame)) {
        take(*page);
    } else if (const auto light = LightReport::decode(frame)) {
        Progress &axis = of(axisOf(light->light.axis));
        if (light->light.number < axis.lights) {
            axis.off[size_t(light->light.number)] = light->off;
            axis.offsets[size_t(light->light.number)] = light->offset;
        }
    } else if (const auto firmware = FirmwareRecord::decode(frame)) {
        unit.identification = identificationOf(*firmware);
    }
}

// Another number of lights is another device.
void ScanCollector::count(Axis axis, int lights)
{
    const int largest = axis == Axis::X ? command::MaxLightsX : command::MaxLightsY;
    Progress &one = of(axis);
    if (one.lights == lights)
        return;
    one = {};
    if (lights < 1 || lights > largest)
        return;
    one.lights = lights;
    one.off.resize(size_t(lights));
    one.offsets.resize(size_t(lights));
}

void ScanCollector::take(const command::ScanPage &page)
{
    Progress &one = of(axisOf(page.axis));
    if (one.lights == 0)
        return;
    if (page.first == 0)
        one.coming = AxisScan(one.lights, pairs);
    if (one.coming.take(page) != AxisScan::Taken::Whole)
        return;
    one.scans.emplace_back(one.coming.levels().begin(), one.coming.levels().end());
    if (one.scans.size() > most)
        one.scans.pop_front();
    if (!pairs)
        return;
    one.gains.push_back(one.coming.gains());
    if (one.gains.size() > most)
        one.gains.pop_front();
}

Measurement ScanCollector::measurement() const
{
    Measurement result;
    result.unit = unit;
    for (const Axis axis : Axes) {
        const Progress &one = of(axis);
        if (one.scans.empty())
            continue;
        AxisMeasurement &measured = result.axis(axis);
        measured.lights = one.lights;
        measured.scans.assign(one.scans.begin(), one.scans.end());
        measured.gains = meanOf(one.gains);
        if (std::none_of(one.off.begin(), one.off.end(),
                         [](const std::optional<bool> &off) { return off.has_value(); }))
            continue;
        for (const std::optional<bool> &off : one.off)
            measured.off.push_back(off.value_or(false));
        measured.offsets = one.offsets;
    }
    return result;
}

QString identificationOf(const command::FirmwareRecord &firmware)
{
    if (firmware.family == 0 && firmware.number == 0 && firmware.date == 0)
        return {};
    return u"%1-%2-%3"_s.arg(uint(firmware.family), 2, 16, QLatin1Char('0'))
        .arg(firmware.number, 5, 16, QLatin1Char('0'))
        .arg(firmware.date, 4, 16, QLatin1Char('0'))
        .toUpper();
}

} // namespace lights
