// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lightmaker.h"

namespace maker {

// A second way to make up frames, of other rules than make(): levels between points that are joined
// by straight lines, even differences between lights, noise with long tails, smudges of several
// drops, obstacles on both axes, boards that are dark or only dim. What holds there and here holds
// by more than the habits of one generator.
Made makeOther(unsigned seed);

} // namespace maker
