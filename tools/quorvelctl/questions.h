// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/records.h"

#include <QString>

#include <optional>

namespace ctl {

class Session;

// What can be asked of a linked frame. Each waits for the answer and fails without one in time.

struct Rotations
{
    UCHAR standard = 0; // quarter turns, which the frame may say anything for
    UCHAR now = 0;
};
Rotations askRotation(Session &session);

command::FirmwareRecord askFirmware(Session &session);
// Nothing of a frame of the older generation. Of one on a serial line only its answer tells whether
// it has a firmware record.
std::optional<command::FirmwareRecord> firmwareOf(Session &session);

// Scan pages have a byte for each light afterwards.
command::LightCounts askCounts(Session &session);

// Scan pages have a level and a gain for each light afterwards.
command::AdcReport askAdc(Session &session);

// How a light is when the request has been obeyed. A light that the frame does not have is a
// failure that says so.
command::LightReport askLight(Session &session, const command::LightRequest &request);

// "X" or "Y".
QString axisName(UCHAR axis);

// Reads back what was written. An answer to an earlier question may still be under way, so another
// value is believed only when it is said again and again.
template <typename Read, typename Value>
Value readBack(const Read &read, const Value &written)
{
    constexpr int Attempts = 3;
    Value said = read();
    for (int attempt = 1; attempt < Attempts && said != written; ++attempt)
        said = read();
    return said;
}

} // namespace ctl
