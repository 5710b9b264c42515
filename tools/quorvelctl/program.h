// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

#include <chrono>
#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace ctl {

class Session;

// Does what the arguments behind the program's name say, and returns the exit code.
int run(const QStringList &arguments, Session &session);

// Lets a command be called by its name: work is done when the whole command line is understood.
void define(CLI::App &command, Session &session, std::function<void()> work);

// An option that takes seconds, such as 0.5, whatever the user's locale.
void addSeconds(CLI::App &command, const std::string &option, const std::string &help,
                std::function<void(std::chrono::milliseconds)> take);

} // namespace ctl
