// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "doctor/examination.h"

#include <functional>

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The machine of this session, and what it is examined for.
const doctor::Machine &machineOf(const Session &session);
doctor::Patient patientOf(const Session &session);
// Links the frame if that can be done, and asks it. onLinked is called in between, if there is one.
doctor::Interview interviewed(Session &session, const std::function<void()> &onLinked = {});

// The command "doctor": what keeps a frame from working on this machine.
void addDoctor(CLI::App &app, Session &session);

} // namespace ctl
