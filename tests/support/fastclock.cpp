// SPDX-License-Identifier: GPL-3.0-or-later

#include "fastclock.h"

#include <cerrno>
#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <ctime>
#include <initializer_list>

namespace {

using Ns = long long;

constexpr Ns NsPerSecond = 1'000'000'000;
constexpr Ns NsPerMs = 1'000'000;

// Written while there is one thread that looks.
std::atomic<int> factor = 1;
std::atomic<Ns> realStart[2] = {}; // of the monotonic and of the wall clock, when the speed was set
std::atomic<Ns> modelStart[2] = {}; // what they showed then
std::atomic<Ns> asleep = 0;

Ns nsOf(const timespec &time)
{
    return Ns(time.tv_sec) * NsPerSecond + time.tv_nsec;
}

timespec timeOf(Ns ns)
{
    return {time_t(ns / NsPerSecond), long(ns % NsPerSecond)};
}

Ns realNow(clockid_t clock)
{
    timespec now{};
    syscall(SYS_clock_gettime, clock, &now);
    return nsOf(now);
}

// Which of the two a clock is, or -1.
int kindOf(clockid_t clock)
{
    switch (clock) {
    case CLOCK_MONOTONIC:
    case CLOCK_MONOTONIC_COARSE:
    case CLOCK_MONOTONIC_RAW:
    case CLOCK_BOOTTIME:
        return 0;
    case CLOCK_REALTIME:
    case CLOCK_REALTIME_COARSE:
        return 1;
    default:
        return -1;
    }
}

clockid_t clockOf(int kind)
{
    return kind == 0 ? CLOCK_MONOTONIC : CLOCK_REALTIME;
}

Ns modelNow(int kind)
{
    return modelStart[kind] + (realNow(clockOf(kind)) - realStart[kind]) * factor;
}

// A deadline of the model's, as the real clock will show it.
timespec realDeadline(int kind, const timespec &deadline)
{
    return timeOf(realStart[kind] + (nsOf(deadline) - modelStart[kind]) / factor);
}

// A time to wait for, in reality; what is asked for is never cut to nothing.
timespec realTime(const timespec &time)
{
    const Ns ns = nsOf(time);
    return timeOf(ns == 0 ? 0 : ns / factor + 1);
}

template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

// Before anybody looks.
const bool started = [] {
    fastclock::setSpeed(1);
    return true;
}();
const Ns programStart = realNow(CLOCK_MONOTONIC);

} // namespace

namespace fastclock {

void setSpeed(int speed)
{
    Ns shown[2] = {};
    for (int kind : {0, 1}) {
        const bool first = realStart[kind] == 0;
        shown[kind] = first ? realNow(clockOf(kind)) : modelNow(kind);
    }
    for (int kind : {0, 1}) {
        realStart[kind] = realNow(clockOf(kind));
        modelStart[kind] = shown[kind];
    }
    factor = speed;
    // Sleeps are short now; threads have this from the one that starts them.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
}

void setWall(int seconds)
{
    modelStart[1] += Ns(seconds) * NsPerSecond;
}

void sleepOn(int seconds)
{
    asleep += Ns(seconds) * NsPerSecond;
}

double realSeconds()
{
    return double(realNow(CLOCK_MONOTONIC) - programStart) / double(NsPerSecond);
}

} // namespace fastclock

// These take the place of the C library's.

extern "C" {

int clock_gettime(clockid_t clock, timespec *now) noexcept
{
    const int kind = kindOf(clock);
    // Somebody may look before this file is set up.
    if (kind < 0 || realStart[kind] == 0)
        return int(syscall(SYS_clock_gettime, clock, now));
    *now = timeOf(modelNow(kind) + (clock == CLOCK_BOOTTIME ? asleep.load() : 0));
    return 0;
}

int gettimeofday(timeval *now, void *) noexcept
{
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    *now = {time.tv_sec, suseconds_t(time.tv_nsec / 1000)};
    return 0;
}

int nanosleep(const timespec *time, timespec *rest)
{
    const timespec real = realTime(*time);
    timespec left{};
    const auto result = int(syscall(SYS_nanosleep, &real, &left));
    if (result != 0 && rest)
        *rest = timeOf(nsOf(left) * factor);
    return result;
}

int clock_nanosleep(clockid_t clock, int flags, const timespec *time, timespec *rest)
{
    const int kind = kindOf(clock);
    const bool isDeadline = (flags & TIMER_ABSTIME) != 0;
    if (kind < 0)
        return EINVAL;
    const timespec real = isDeadline ? realDeadline(kind, *time) : realTime(*time);
    timespec left{};
    if (syscall(SYS_clock_nanosleep, clockOf(kind), flags, &real, &left) == 0)
        return 0;
    const int problem = errno;
    if (!isDeadline && rest)
        *rest = timeOf(nsOf(left) * factor);
    return problem;
}

int ppoll(pollfd *descriptors, nfds_t count, const timespec *time, const sigset_t *mask)
{
    static auto *const real =
        next<int(pollfd *, nfds_t, const timespec *, const sigset_t *)>("ppoll");
    if (!time)
        return real(descriptors, count, nullptr, mask);
    const timespec shorter = realTime(*time);
    return real(descriptors, count, &shorter, mask);
}

int poll(pollfd *descriptors, nfds_t count, int ms)
{
    if (ms < 0)
        return ppoll(descriptors, count, nullptr, nullptr);
    const timespec time = timeOf(ms * NsPerMs);
    return ppoll(descriptors, count, &time, nullptr);
}

int pthread_cond_timedwait(pthread_cond_t *condition, pthread_mutex_t *mutex,
                           const timespec *deadline)
{
    static auto *const real =
        next<int(pthread_cond_t *, pthread_mutex_t *, const timespec *)>("pthread_cond_timedwait");
    // Which clock a condition goes by it does not tell; they are decades apart.
    const int kind = nsOf(*deadline) > modelStart[1] / 2 ? 1 : 0;
    const timespec earlier = realDeadline(kind, *deadline);
    return real(condition, mutex, &earlier);
}

int pthread_cond_clockwait(pthread_cond_t *condition, pthread_mutex_t *mutex, clockid_t clock,
                           const timespec *deadline)
{
    static auto *const real =
        next<int(pthread_cond_t *, pthread_mutex_t *, clockid_t, const timespec *)>(
            "pthread_cond_clockwait");
    const int kind = kindOf(clock);
    if (kind < 0)
        return EINVAL;
    const timespec earlier = realDeadline(kind, *deadline);
    return real(condition, mutex, clockOf(kind), &earlier);
}

} // extern "C"
