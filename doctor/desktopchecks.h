// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "finding.h"
#include "machine.h"

#include <optional>

namespace doctor {

// Where windows are shown, by what the session says of itself.
Finding checkDesktop(const Machine &machine);
// hasTray: what a program with windows has asked the desktop; nothing for one without.
Finding checkTray(std::optional<bool> hasTray);

} // namespace doctor
