// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QRect>

namespace outside {

// Where something is in the tool: "window/widget" within its window; "window" for its size. Asked
// of the windows that this process makes, which are as those of the program.
QRect drawnAt(const char *name);

} // namespace outside
