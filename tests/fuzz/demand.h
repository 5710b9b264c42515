// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdio>
#include <cstdlib>

// Ends a fuzz program's process when something does not hold.
inline void demand(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "this does not hold: %s\n", what);
    std::abort();
}
