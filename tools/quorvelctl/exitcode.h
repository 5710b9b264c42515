// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace ctl {

// How the program ends. Scripts go by these numbers, so they never change; docs/quorvelctl.md
// lists them. A program that a signal ends has SignalBase and the signal's number.
enum ExitCode : int {
    Done = 0,
    Failed = 1,     // the frame refused or failed, or its lights need service
    WrongUsage = 2, // or a file that is not what it should be
    NoFrame = 3,    // none is there, or it went away meanwhile
    NoPermission = 4,
    InUse = 5,    // by another program
    NoAnswer = 6, // of the frame, in time
    NoOutput = 7, // what there was to say could not be written
    SignalBase = 128,
};

// The name of a code in the output for programs.
constexpr const char *nameOf(int code)
{
    switch (code) {
    case Done:
        return "done";
    case Failed:
        return "failed";
    case WrongUsage:
        return "wrong-usage";
    case NoFrame:
        return "no-frame";
    case NoPermission:
        return "no-permission";
    case InUse:
        return "in-use";
    case NoAnswer:
        return "no-answer";
    case NoOutput:
        return "no-output";
    default:
        return "interrupted";
    }
}

} // namespace ctl
