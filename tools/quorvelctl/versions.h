// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "versions": what the frame is and what firmware runs in it.
void addVersions(CLI::App &app, Session &session);

} // namespace ctl
