#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "doctor": what keeps a frame from working on this machine.
void addDoctor(CLI::App &app, Session &session);

} // namespace ctl
