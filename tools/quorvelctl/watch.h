// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "watch": what the frame says, as it comes.
void addWatch(CLI::App &app, Session &session);

} // namespace ctl
