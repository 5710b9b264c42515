// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// "metrics": what a frame is like now, as OpenMetrics text, for monitoring.
void addMetrics(CLI::App &app, Session &session);

} // namespace ctl
