// SPDX-License-Identifier: GPL-3.0-or-later

#include "serialframing.h"

#include <algorithm>

namespace command::serial {

int putOnLine(const Frame &frame, LineBuffer &line)
{
    line[0] = Sync1;
    line[1] = Sync2;
    std::copy(frame.begin(), frame.end(), line.begin() + SyncSize);
    return std::min(wireLength(frame[offset::Length]), BufferSize);
}

} // namespace command::serial
