// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "lights check": a verdict for every light, of the linked frame or of a file.
void addLightsCheck(CLI::App &lights, Session &session);

} // namespace ctl
