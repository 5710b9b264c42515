// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPoint>
#include <QRect>

namespace outside {

// Where something is in the tool: "window/widget" within its window; "window" for its size. Asked
// of the windows that this process makes, which are as those of the program.
QRect drawnAt(const char *name);

// Where a finger chooses a light of the X axis, counted from 0, on the light screen. The frame has
// as many lights as a simulated one has unless told otherwise.
QPoint drawnLightX(int number);

} // namespace outside
