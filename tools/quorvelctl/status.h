// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "status": how the frame is linked and whether it answers.
void addStatus(CLI::App &app, Session &session);

} // namespace ctl
