#pragma once

#include "device/link.h"

// What the status line says beyond its few words: by what a frame is linked, what keeps it from
// being linked, or what to try, in order.
QString statusHint(const Link::State &state);
