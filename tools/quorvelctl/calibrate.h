// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "calibrate": the four targets of a screen.
void addCalibrate(CLI::App &app, Session &session);

} // namespace ctl
