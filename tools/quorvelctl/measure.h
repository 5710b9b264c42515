#pragma once

#include "lights/measurement.h"

namespace ctl {

class Session;

// Measures both axes of a linked frame, each as often as scans says: levels and gains. Lights that
// give no light are asked whether somebody switched them off. Shows progress.
lights::Measurement measure(Session &session, int scans);

} // namespace ctl
