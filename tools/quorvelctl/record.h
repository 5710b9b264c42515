// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "record": what travels to and from the frame, into a file.
void addRecord(CLI::App &app, Session &session);

} // namespace ctl
