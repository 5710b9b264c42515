// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace CLI {
class App;
}

namespace ctl {

class Session;

// The command "adc": between which readings the frame keeps its lights.
void addAdc(CLI::App &app, Session &session);

} // namespace ctl
