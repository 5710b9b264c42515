// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "struct.h"

// One frame on its way between the host and the touch frame, and what became of it.
struct Traffic
{
    enum class Direction : UCHAR { ToFrame, FromFrame };
    enum class Over : UCHAR { None, Usb, Serial };
    enum class Result : UCHAR {
        Done,    // handed to the device or to the line; received
        Failed,  // the device or the line did not take it
        Dropped, // never tried, for want of a link or of room; received with another report id
    };

    Direction direction = Direction::ToFrame;
    Over over = Over::None;
    Result result = Result::Done;
    Frame frame{};

    bool operator==(const Traffic &) const = default;
};
