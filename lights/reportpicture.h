// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "drawing.h"
#include "report.h"
#include "touch.h"
#include "wall.h"

#include <QString>

namespace lights {

// One letter for each, beside the colour; nothing for a healthy light.
QString letterFor(LightVerdict verdict);

// The frame as it stands on the wall: lights along the edges, stretches outside of them, and where
// touches go wrong on the screen.
Drawing wallPicture(const Report &report, const std::vector<TouchFault> &faults, const Wall &wall);

// Levels of an axis, those of healthy lights, and the lowest that works.
Drawing curvePicture(const Report &report, Axis axis);

} // namespace lights
