// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// A clock for a whole program that runs faster than the real one: fastclock.cpp stands in front of
// the C library's clocks, sleeps and waits with a deadline, for every thread and every library of
// the program it is compiled into. Who sleeps for a second of this clock sleeps for a fraction of a
// real one, and does everything else as ever.
//
// Not covered: waits that the kernel times by itself (timer descriptors, alarms), and clocks of
// processor time, which stay real.
namespace fastclock {

// How many seconds go by in a real one; from now on, without a jump. Only while no other thread of
// the program waits for a time.
void setSpeed(int speed);

// Sets the clock on the wall to another time, so many seconds from what it shows now; the other
// clocks and who waits by them do not notice. Under the same condition.
void setWall(int seconds);

// The machine has slept for so many seconds more, as the clock shows that goes on meanwhile.
void sleepOn(int seconds);

// Seconds since the program began, as real clocks count them.
double realSeconds();

} // namespace fastclock
