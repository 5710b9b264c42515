// SPDX-License-Identifier: GPL-3.0-or-later

#include "figure.h"
#include "program.h"
#include "windowwatch.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>

using namespace std::chrono_literals;

namespace {

// The first starts read files from the disk.
constexpr int WarmUps = 2;
constexpr int StartPairs = 40;
constexpr int MemoryPairs = 7;
constexpr int IdleRuns = 3;
constexpr auto WindowLimit = 20s;
// Window manager and tray finish with the window that went away.
constexpr auto BetweenPrograms = 150ms;
constexpr auto MemorySettles = 2s;
constexpr auto SolitudeLimit = 150s;
constexpr auto IdleSettles = 3s;
constexpr auto IdlePeriod = 20s;
// A report is read in this many pauses, and after it comes one more.
constexpr int ReportPauses = 64;
constexpr auto ReportPause = 1ms;
constexpr auto CyclePause = 3ms;

constexpr double StartBar = 1.6;
constexpr double MemoryBar = 1.5;
constexpr double IdleBar = 1.25;

// Measures both programs in turns, so that what else the machine does hits both alike.
template <typename Measure>
bool compare(const char *what, const char *unit, double bar, int pairs, Measure measureOne)
{
    using namespace std::string_literals;
    std::vector<double> smallest;
    std::vector<double> tool;
    smallest.reserve(size_t(pairs));
    tool.reserve(size_t(pairs));
    for (int i = 0; i < pairs; ++i) {
        smallest.push_back(measureOne(0));
        tool.push_back(measureOne(1));
    }
    const bool holds = print({what + ", quorvel / smallest window"s, bar, Figure::HeldBy::Median,
                              ratios(tool, smallest)});
    return print({"  quorvel, "s + unit, 0, Figure::HeldBy::Median, tool}) &&
           print({"  smallest window, "s + unit, 0, Figure::HeldBy::Median, smallest}) && holds;
}

std::chrono::duration<double, std::milli> waitForWindow(WindowWatch &watch, const Program &program)
{
    const auto shown = watch.firstWindowOf(program.pid(), WindowLimit);
    if (!shown)
        giveUp("a program showed no window");
    return *shown - program.startedAt();
}

double startMs(WindowWatch &watch, const Command &command)
{
    std::this_thread::sleep_for(BetweenPrograms);
    watch.forgetPast();
    const Program program(command);
    return waitForWindow(watch, program).count();
}

double memoryMiB(WindowWatch &watch, const Command &command)
{
    std::this_thread::sleep_for(BetweenPrograms);
    watch.forgetPast();
    const Program program(command);
    waitForWindow(watch, program);
    std::this_thread::sleep_for(MemorySettles);
    return program.memoryMiB();
}

// How many processes, of those that this user may look into, have Qt in their memory.
int qtPrograms()
{
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream maps(entry.path() / "maps");
        std::string line;
        while (std::getline(maps, line)) {
            if (line.find("libQt6Core") != std::string::npos) {
                ++count;
                break;
            }
        }
    }
    return count;
}

bool measureMemory(WindowWatch &watch, const Command &smallest, const Command &tool)
{
    std::vector<double> neighbours;
    neighbours.reserve(2 * MemoryPairs);
    const auto end = Program::Clock::now() + SolitudeLimit;
    // A page that another program has in memory too counts only in part, so a sample taken beside
    // one is taken again, as long as there is time.
    const bool holds = compare("memory when idle", "MiB", MemoryBar, MemoryPairs, [&](int which) {
        while (true) {
            const int before = qtPrograms();
            const double mib = memoryMiB(watch, which == 0 ? smallest : tool);
            const int others = std::max(before, qtPrograms());
            if (others == 0 || Program::Clock::now() > end) {
                neighbours.push_back(others);
                return mib;
            }
        }
    });
    print({"  other Qt programs beside it", 0, Figure::HeldBy::Median, neighbours});
    return holds;
}

// Makes the pauses of a cycle of the reader, and nothing else, until asked to stop. Returns what
// that took of a processor.
std::chrono::nanoseconds pauseOnly(const std::stop_token &stop)
{
    auto due = Program::Clock::now();
    while (!stop.stop_requested()) {
        for (int i = 0; i < ReportPauses; ++i)
            std::this_thread::sleep_until(due += ReportPause);
        std::this_thread::sleep_until(due += CyclePause);
    }
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

struct Idle
{
    double percent;   // of a core, that the program took
    double bareRatio; // to a thread with the same pauses, at the same time
};

Idle measureIdle(WindowWatch &watch, const Command &command)
{
    std::this_thread::sleep_for(BetweenPrograms);
    watch.forgetPast();
    const Program program(command);
    waitForWindow(watch, program);
    std::this_thread::sleep_for(IdleSettles);
    std::chrono::duration<double> bare{};
    const auto wallBefore = Program::Clock::now();
    const auto usedBefore = program.processorTime();
    {
        const std::jthread beside([&bare](const std::stop_token &stop) { bare = pauseOnly(stop); });
        std::this_thread::sleep_for(IdlePeriod);
    }
    const std::chrono::duration<double> used = program.processorTime() - usedBefore;
    const std::chrono::duration<double> wall = Program::Clock::now() - wallBefore;
    return {used / wall * 100, used / bare};
}

} // namespace

// measure_program start|memory|idle SMALLEST QUORVEL: measures the program QUORVEL from outside,
// next to the program SMALLEST, on the X server of DISPLAY; both are absolute paths. Prints lines
// of the table; the exit code is 0 when every bar holds.
int main(int argc, char **argv)
{
    if (argc != 4)
        giveUp("use: measure_program start|memory|idle SMALLEST QUORVEL");
    const std::string_view figure = argv[1];
    const Command smallest{{argv[2]}, {}};
    const Command tool{{argv[3]}, {argv[3], "-close"}};
    const Command demo{{argv[3], "--demo"}, {argv[3], "--demo", "-close"}};
    const Command *const both[] = {&smallest, &tool};

    WindowWatch watch;
    bool holds = false;
    if (figure == "start") {
        for (int i = 0; i < WarmUps; ++i) {
            startMs(watch, smallest);
            startMs(watch, tool);
        }
        holds = compare("start to mapped window", "ms", StartBar, StartPairs,
                        [&](int which) { return startMs(watch, *both[which]); });
    } else if (figure == "memory") {
        holds = measureMemory(watch, smallest, tool);
    } else if (figure == "idle") {
        std::vector<double> percents;
        std::vector<double> bareRatios;
        for (int i = 0; i < IdleRuns; ++i) {
            const Idle idle = measureIdle(watch, demo);
            percents.push_back(idle.percent);
            bareRatios.push_back(idle.bareRatio);
        }
        holds = print({"connected and idle / a bare thread with the same pauses", IdleBar,
                       Figure::HeldBy::Median, bareRatios});
        print({"  quorvel, % of one core", 0, Figure::HeldBy::Median, percents});
    } else {
        giveUp("no figure of that name; use start, memory or idle");
    }
    return holds ? 0 : 1;
}
