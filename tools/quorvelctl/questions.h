#pragma once

#include "device/records.h"

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

} // namespace ctl
