// SPDX-License-Identifier: GPL-3.0-or-later

#include "heap.h"

#include <malloc.h>

namespace {

constexpr int LargeBlock = 1024 * 1024; // bytes

} // namespace

void settleHeap()
{
    // Threads that mostly wait need no heap each.
    mallopt(M_ARENA_MAX, 1);
    // A picture of a whole screen goes back to the system when it is given up. Unless told so, the
    // C library takes the next one of that size from the heap, where smaller blocks soon keep the
    // place behind it from being given back.
    mallopt(M_MMAP_THRESHOLD, LargeBlock);
}
