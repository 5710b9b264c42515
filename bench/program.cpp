// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <thread>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto EndBudget = 5s;
constexpr auto LookAgain = 2ms;
constexpr double KiBPerMiB = 1024;

pid_t spawn(const std::vector<std::string> &command)
{
    std::vector<std::string> words = command;
    std::vector<char *> arguments;
    std::transform(words.begin(), words.end(), std::back_inserter(arguments),
                   [](std::string &word) { return word.data(); });
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    pid_t pid = 0;
    const int error = posix_spawn(&pid, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        giveUp(command[0] + " cannot be started (" + std::strerror(error) + ")");
    return pid;
}

bool endsInTime(pid_t pid)
{
    const auto deadline = Program::Clock::now() + EndBudget;
    while (waitpid(pid, nullptr, WNOHANG) == 0) {
        if (Program::Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(LookAgain);
    }
    return true;
}

void endWith(pid_t pid, const std::string &name)
{
    if (endsInTime(pid))
        return;
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    giveUp(name + " did not end when it was asked to");
}

} // namespace

Program::Program(Command how)
    : command(std::move(how))
    , begin(Clock::now())
    , child(spawn(command.start))
{
}

Program::~Program()
{
    if (command.end.empty()) {
        kill(child, SIGTERM);
    } else {
        const pid_t messenger = spawn(command.end);
        endWith(messenger, command.end[0]);
    }
    endWith(child, command.start[0]);
}

double Program::memoryMiB() const
{
    std::ifstream rollup("/proc/" + std::to_string(child) + "/smaps_rollup");
    std::string word;
    while (rollup >> word) {
        double kib = 0;
        if (word == "Pss:" && rollup >> kib)
            return kib / KiBPerMiB;
    }
    giveUp(command.start[0] + " has ended, or this kernel does not tell how memory is shared");
}

std::chrono::nanoseconds Program::processorTime() const
{
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(child, &clock) != 0 || clock_gettime(clock, &time) != 0)
        giveUp(command.start[0] + " has ended while it was measured");
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void giveUp(const std::string &sentence)
{
    std::fprintf(stderr, "%s\n", sentence.c_str());
    std::_Exit(EXIT_FAILURE);
}
