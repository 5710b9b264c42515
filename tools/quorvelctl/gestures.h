// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "gestures": how touches become mouse actions.
void addGestures(CLI::App &app, Session &session);

} // namespace ctl
