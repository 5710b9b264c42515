// SPDX-License-Identifier: GPL-3.0-or-later

#include "figure.h"
#include "program.h"
#include "sim/sim_adapter.h"

#include "device/frame.h"
#include "device/pacing.h"

#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <spawn.h>
#include <string_view>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;
using Ms = std::chrono::duration<double, std::milli>;

namespace {

constexpr int WarmUps = 2;
constexpr int StartPairs = 30;
constexpr int MemoryPairs = 5;
constexpr int Invocations = 1000;
constexpr auto MemorySettles = 2s;
constexpr auto StartLimit = 10s;
constexpr double KiBPerMiB = 1024;

// What the program may add to the time that the frame needs.
constexpr double StartBar = 1.15;
constexpr double StartMs = 30;
constexpr double MemoryBar = 1.0 / 3;
// Less than one thing.
constexpr double NothingBar = 0.5;

// A process whose output is read.
class Reader
{
public:
    explicit Reader(std::vector<std::string> command)
        : begin(Program::Clock::now())
    {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0)
            giveUp("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        posix_spawn_file_actions_addclose(&actions, ends[1]);
        std::vector<char *> arguments;
        arguments.reserve(command.size() + 1);
        for (std::string &word : command)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        if (posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
            giveUp(command[0] + " cannot be started");
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        end = ends[0];
    }
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;
    ~Reader()
    {
        ::close(end);
        if (child > 0)
            ::waitpid(child, nullptr, 0);
    }

    // From its start to the first byte that it says.
    Ms untilAnswer() const
    {
        char byte = 0;
        if (::read(end, &byte, 1) != 1)
            giveUp("the program says nothing");
        return Program::Clock::now() - begin;
    }
    int exitCode()
    {
        std::array<char, 4096> rest{};
        while (::read(end, rest.data(), rest.size()) > 0) {
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        child = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    const Program::Clock::time_point begin;
    pid_t child = 0;
    int end = -1;
};

// What the frame itself needs to say its versions: the pause before a command, the transfer there,
// and the one back.
Ms frameAlone()
{
    constexpr auto PauseBeforeSend = 50ms;
    sim::SimAdapter frame{sim::Profile()};
    frame.DoFindDev({}, true);
    const auto begin = Program::Clock::now();
    Frame command = command::request(command::Firmware, command::firmware::Query);
    Pacer().sleep(PauseBeforeSend);
    frame.SendReport(command::ReportId, command.data());
    Frame report{};
    while (!command::is(report, command::Firmware, command::replyTo(command::firmware::Query))) {
        frame.ReadReport(command::ReportId, report.data());
        if (Program::Clock::now() - begin > StartLimit)
            giveUp("the simulated frame does not answer");
    }
    return Program::Clock::now() - begin;
}

bool measureStart(const std::string &onFrame)
{
    std::vector<double> answers;
    std::vector<double> beyondStart;
    std::vector<double> frames;
    for (int i = -WarmUps; i < StartPairs; ++i) {
        const double answer = Reader({onFrame, "versions"}).untilAnswer().count();
        const double frame = frameAlone().count();
        if (i < 0)
            continue;
        answers.push_back(answer);
        beyondStart.push_back(answer - StartMs);
        frames.push_back(frame);
    }
    const bool holds = print({"quorvelctl versions: (start to answer - 30 ms) / frame", StartBar,
                              Figure::HeldBy::Median, ratios(beyondStart, frames)});
    print({"  start to answer, ms", 0, Figure::HeldBy::Median, answers});
    print({"  the frame itself, ms", 0, Figure::HeldBy::Median, frames});
    return holds;
}

double residentMiB(pid_t pid)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string word;
    while (status >> word) {
        double kib = 0;
        if (word == "VmRSS:" && status >> kib)
            return kib / KiBPerMiB;
    }
    giveUp("a program has ended while its memory was measured");
}

double memoryOf(const Command &command)
{
    const Program program(command);
    std::this_thread::sleep_for(MemorySettles);
    return residentMiB(program.pid());
}

// A simulated frame on a serial line.
class SerialFrame
{
public:
    explicit SerialFrame(const std::string &simulator)
        : path(std::filesystem::temp_directory_path() / ("frame" + std::to_string(::getpid())))
        , program({{simulator, "serial", "--link", path}, {}})
    {
        while (!std::filesystem::exists(path))
            std::this_thread::sleep_for(10ms);
    }

    const std::string path;
    const Program program;
};

bool measureMemory(const std::string &quorvelctl, const std::string &windowed,
                   const std::string &simulator)
{
    const SerialFrame frame(simulator);
    std::vector<double> ctl;
    std::vector<double> window;
    for (int i = 0; i < MemoryPairs; ++i) {
        ctl.push_back(memoryOf({{quorvelctl, "watch", "--port", frame.path}, {}}));
        window.push_back(memoryOf({{windowed, "--demo"}, {windowed, "--demo", "-close"}}));
    }
    const bool holds = print({"resident memory on a frame, quorvelctl / quorvel", MemoryBar,
                              Figure::HeldBy::Median, ratios(ctl, window)});
    print({"  quorvelctl, MiB", 0, Figure::HeldBy::Median, ctl});
    print({"  quorvel, MiB", 0, Figure::HeldBy::Median, window});
    return holds;
}

// Files in the places of a user, and the locks and processes that name the frame's line.
std::set<std::string> surroundings(const std::string &line)
{
    namespace fs = std::filesystem;
    const std::string name = fs::path(line).filename();
    std::set<std::string> found;
    for (const char *variable : {"HOME", "TMPDIR", "XDG_RUNTIME_DIR"}) {
        if (const char *folder = std::getenv(variable); folder && *folder) {
            for (const auto &entry : fs::recursive_directory_iterator(folder))
                found.insert(entry.path());
        }
    }
    for (const auto &entry : fs::directory_iterator("/run/lock")) {
        if (entry.path().filename().string().find(name) != std::string::npos)
            found.insert(entry.path());
    }
    for (const auto &entry : fs::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "cmdline");
        const std::string command{std::istreambuf_iterator(file), {}};
        if (command.find(name) != std::string::npos)
            found.insert(entry.path());
    }
    return found;
}

size_t openDescriptors(pid_t pid)
{
    const std::filesystem::directory_iterator all("/proc/" + std::to_string(pid) + "/fd");
    return size_t(std::distance(begin(all), end(all)));
}

bool measureMany(const std::string &quorvelctl, const std::string &simulator)
{
    const SerialFrame frame(simulator);
    const std::vector<std::string> command = {quorvelctl, "--port", frame.path,
                                              "--rate",   "115200", "versions"};
    if (Reader(command).exitCode() != 0)
        giveUp("quorvelctl does not get its answer");
    const std::set<std::string> before = surroundings(frame.path);
    const size_t descriptors = openDescriptors(frame.program.pid());
    const double memory = residentMiB(frame.program.pid());
    std::vector<double> times;
    double failed = 0;
    for (int i = 0; i < Invocations; ++i) {
        const auto begin = Program::Clock::now();
        failed += Reader(command).exitCode() != 0 ? 1 : 0;
        times.push_back(Ms(Program::Clock::now() - begin).count());
    }
    double left = double(openDescriptors(frame.program.pid())) - double(descriptors);
    for (const std::string &one : surroundings(frame.path)) {
        if (before.count(one) > 0)
            continue;
        std::fprintf(stderr, "left behind: %s\n", one.c_str());
        ++left;
    }
    const bool nothingLeft = print(
        {"left behind by a thousand invocations", NothingBar, Figure::HeldBy::Maximum, {left}});
    const bool noneFailed =
        print({"  of these without an answer", NothingBar, Figure::HeldBy::Maximum, {failed}});
    print({"  one over a serial line, start to end, ms", 0, Figure::HeldBy::Median, times});
    print({"  growth of the frame's process, MiB",
           0,
           Figure::HeldBy::Maximum,
           {residentMiB(frame.program.pid()) - memory}});
    return nothingLeft && noneFailed;
}

} // namespace

// measure_ctl FOLDER: measures the command line program; FOLDER is where all programs were built.
// Prints lines of the table; the exit code is 0 when every bar holds.
int main(int argc, char **argv)
{
    if (argc != 2)
        giveUp("use: measure_ctl FOLDER");
    const std::string folder = argv[1];
    const std::string quorvelctl = folder + "/tools/quorvelctl/quorvelctl";
    const std::string simulator = folder + "/tools/quorvel-sim";
    bool holds = measureStart(folder + "/bench/ctl_on_frame");
    holds = measureMemory(quorvelctl, folder + "/app/quorvel", simulator) && holds;
    holds = measureMany(quorvelctl, simulator) && holds;
    return holds ? 0 : 1;
}
