// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "commands.h"

// A frame as it travels on a serial line, from either end: two sync bytes, then the frame up to two
// bytes behind its payload. UartReceiver is the other direction.
namespace command::serial {

using LineBuffer = std::array<UCHAR, BufferSize>;

// Fills the buffer; returns how many of its bytes travel. A frame has no more than FrameSize bytes,
// whatever its length byte says: the calibration class has data there.
int putOnLine(const Frame &frame, LineBuffer &line);

} // namespace command::serial
