// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "finding.h"
#include "machine.h"

namespace doctor {

// The serial ports and who may use them. A port that the frame is wanted at, a name or a path, has
// to be usable; an empty one means that the frame is on USB.
Finding checkSerialPorts(const Machine &machine, const QString &wanted);

} // namespace doctor
