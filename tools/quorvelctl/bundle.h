// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "bundle": one file for who gives support.
void addBundle(CLI::App &app, Session &session);

} // namespace ctl
