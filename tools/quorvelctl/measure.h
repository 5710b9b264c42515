// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "lights/measurement.h"
#include "lights/thresholds.h"

namespace ctl {

class Session;

// Measures both axes of the linked frame, each as often as scans says: levels and gains. Lights
// that are dead by the thresholds are asked whether somebody switched them off. Shows progress.
lights::Measurement measure(Session &session, int scans, const lights::Thresholds &thresholds);

} // namespace ctl
