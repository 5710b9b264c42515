// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "rotation": by how much the frame turns what it reports.
void addRotation(CLI::App &app, Session &session);

} // namespace ctl
