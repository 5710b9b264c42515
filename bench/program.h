// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

// How to start a program, and how to ask it to end.
struct Command
{
    std::vector<std::string> start;
    std::vector<std::string> end; // empty: the signal TERM
};

// A program at work; its output is thrown away. Failures of the system end the measurement with
// a sentence on standard error.
class Program
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Program(Command how);
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;
    // Ends it; one that does not within five seconds is killed and spoils the measurement.
    ~Program();

    pid_t pid() const { return child; }
    Clock::time_point startedAt() const { return begin; } // just before there was a process

    double memoryMiB() const;                       // its proportional share
    std::chrono::nanoseconds processorTime() const; // of all its threads, also the ended ones

private:
    const Command command;
    const Clock::time_point begin;
    const pid_t child;
};

[[noreturn]] void giveUp(const std::string &sentence);
