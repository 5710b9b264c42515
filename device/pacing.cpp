// SPDX-License-Identifier: GPL-3.0-or-later

#include "pacing.h"

#include <thread>

void Pacer::sleep(std::chrono::milliseconds duration)
{
    const auto now = Clock::now();
    if (now > due + duration)
        due = now;
    due += duration;
    std::this_thread::sleep_until(due);
}
