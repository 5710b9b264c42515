// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>

template <typename Action>
std::chrono::nanoseconds took(Action action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::steady_clock::now() - begin;
}

// How long something takes at best: a busy machine makes any single try late. Tries until one takes
// less than enough, or for 15 seconds; a try returns how long it took.
template <typename Try>
std::chrono::nanoseconds quickest(std::chrono::nanoseconds enough, Try once)
{
    const QDeadlineTimer patience(std::chrono::seconds(15));
    auto best = std::chrono::nanoseconds::max();
    do
        best = std::min<std::chrono::nanoseconds>(best, once());
    while (best >= enough && !patience.hasExpired());
    return best;
}
