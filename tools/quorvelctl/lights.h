// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "lights": levels of all lights, and single lights.
void addLights(CLI::App &app, Session &session);

} // namespace ctl
