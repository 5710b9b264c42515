// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/records.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <set>

// What has come from the frame that is linked, so that a window can be asked where it has from what
// it shows.
struct Reported
{
    using Levels = std::array<std::bitset<256>, command::MaxLightsX>; // by light

    int frames = 0;
    std::set<int> rotations;
    std::set<int> targets;
    bool calibrationEnded = false;
    bool firmware = false;
    std::set<int> smallest; // of the ADC lines
    std::set<int> readings; // of lights
    int lights = 0;         // so many of these have come
    int reading = 0;        // the last one
    int pages = 0;
    int lowest = 255;
    int highest = 0;
    std::array<Levels, 2> levels; // X, Y; of pages with gains; of any frame so far

    void take(const Frame &frame)
    {
        ++frames;
        if (const auto rotation = command::RotationReport::decode(frame))
            rotations.insert(rotation->code);
        firmware = firmware || command::FirmwareRecord::decode(frame);
        if (const auto lines = command::AdcReport::decode(frame))
            smallest.insert(lines->lines.min);
        if (const auto light = command::LightReport::decode(frame)) {
            ++lights;
            reading = light->adc;
            readings.insert(reading);
        }
        if (const auto page = command::ScanPage::decode(frame))
            take(*page);
        const auto step = command::CalibrationStep::decode(frame);
        if (step && step->step >= command::calibration::Step1 &&
            step->step <= command::calibration::Step4)
            targets.insert(step->step - command::calibration::Step1);
        calibrationEnded = calibrationEnded || (step && step->step == command::calibration::End);
    }
    void forget()
    {
        const auto measured = levels;
        *this = {};
        levels = measured;
    }

private:
    void take(const command::ScanPage &page)
    {
        ++pages;
        auto &axis = levels[page.axis == command::scan::AxisX ? 0 : 1];
        for (int i = 0; 2 * i + 1 < page.size; ++i) {
            if (page.first + i < int(axis.size()))
                axis[size_t(page.first + i)].set(size_t(page.pairLevel(i)));
        }
        for (int i = 0; i < page.size; ++i) {
            lowest = std::min(lowest, page.level(i));
            highest = std::max(highest, page.level(i));
        }
    }
};
