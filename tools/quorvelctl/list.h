// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "list": the frames and serial ports that there are.
void addList(CLI::App &app, Session &session);

} // namespace ctl
