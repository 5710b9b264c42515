// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "reset": restarts the frame.
void addReset(CLI::App &app, Session &session);

} // namespace ctl
