#pragma once

#include "report.h"
#include "touch.h"

#include <QString>

namespace lights {

// One letter for each, beside the colour; nothing for a healthy light.
QString letterFor(LightVerdict verdict);

// The style classes that the pictures use.
QString pictureStyle();

// The frame as it stands on the wall: lights along the edges, stretches outside of them, and where
// touches go wrong on the screen.
QString wallPicture(const Report &report, const std::vector<TouchFault> &faults);

// Levels of an axis, those of healthy lights, and the lowest that works.
QString curvePicture(const Report &report, Axis axis);

} // namespace lights
