// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>

// Sleeps that follow one another on an absolute schedule: waking late shortens the next sleep,
// so that n sleeps of d take n times d and not the scheduler's rounding on top.
class Pacer
{
public:
    using Clock = std::chrono::steady_clock;

    // A caller that has fallen further behind than one whole sleep starts a new schedule.
    void sleep(std::chrono::milliseconds duration);

private:
    Clock::time_point due = Clock::now();
};
