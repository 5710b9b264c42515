// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "axisscan.h"
#include "measurement.h"

#include "device/records.h"

#include <array>
#include <deque>
#include <optional>
#include <vector>

namespace lights {

// What a device says of itself as one text, family, number and date of the product; empty if it
// says nothing but zeros.
QString identificationOf(const command::FirmwareRecord &firmware);

// Makes a measurement of the frames that go to a device and come from it, in order: of a link, or
// of a recording. Repeats of a report and scans that stay incomplete count for nothing. Of many
// scans the newest are kept.
class ScanCollector
{
public:
    explicit ScanCollector(int mostScans = MaxScans)
        : most(size_t(mostScans))
    {
    }

    void sent(const Frame &frame);
    void received(const Frame &frame);

    // What is known by now; an axis of which no scan is complete has no lights.
    Measurement measurement() const;

private:
    struct Progress
    {
        int lights = 0; // as the device last said
        AxisScan coming;
        std::deque<Scan> scans;
        std::deque<std::vector<int>> gains;   // of the scans that had them
        std::vector<std::optional<bool>> off; // as far as the device was asked
        std::vector<int> offsets;
    };

    Progress &of(Axis axis) { return progress[axis == Axis::X ? 0 : 1]; }
    const Progress &of(Axis axis) const { return progress[axis == Axis::X ? 0 : 1]; }
    void count(Axis axis, int lights);
    void take(const command::ScanPage &page);

    size_t most; // scans
    std::array<Progress, 2> progress;
    std::optional<Frame> last; // report since something was sent
    bool pairs = false;        // pages carry a level and a gain for each light
    Unit unit;
};

} // namespace lights
