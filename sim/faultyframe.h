// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "faultplan.h"
#include "firmware.h"
#include "replay.h"

namespace sim {

// A touch frame on a bad cable: the firmware, the plan that spoils transfers, and whether the
// cable is in; or, instead of the firmware, a recording. Every door to the simulated frame goes
// through one of these. No locks of its own.
class FaultyFrame
{
public:
    struct Report
    {
        Frame bytes;
        bool fresh; // false: the report before, read again
    };

    FaultyFrame(Profile profile, FaultPlan faults, Clock clock, bool startsPlugged);

    // Says from now on what a recording says. Of the firmware only its profile and the serial rate
    // count then.
    void replay(Replay recording);
    const Replay *recording() const { return replayed ? &*replayed : nullptr; }
    // How the host has just departed from the recording, if it has; once.
    QString takeNews() { return replayed ? replayed->takeNews() : QString(); }

    // Counts a transfer and tells what happens to it. An unplug has then happened already.
    Fault beginTransfer();
    // Ends a transfer that the fault lets through. Returns the command as it arrived; length is
    // how many of its bytes the link carries.
    Frame write(const Frame &frame, const Fault &fault, int length = FrameSize);
    Report read(const Fault &fault);
    // Whether a transfer has something new to bring, if only the end of the device; and how long
    // until then where that is known.
    bool hasReply() const;
    std::optional<std::chrono::milliseconds> untilReply() const;

    bool plugged() const { return in; }
    // How often the cable went in so far: what was opened before an unplug stays dead after it.
    quint64 session() const { return plugs; }
    // Each is true when it changed something.
    bool plug();
    bool unplug(std::optional<std::chrono::milliseconds> back = {});
    // Plugs the cable in again when an unplug promised that and its time has come.
    bool comeBack();
    // How long until comeBack() has something to do.
    std::optional<std::chrono::milliseconds> untilBack() const;

    quint64 transfers() const { return count; }
    Firmware &firmware() { return model; }
    const Firmware &firmware() const { return model; }

private:
    void execute(const Frame &frame, int length);

    FaultPlan plan;
    Clock clock;
    Firmware model;
    std::optional<Replay> replayed;
    Frame lastReport = command::report(0, 0);
    quint64 count = 0;
    bool in;
    quint64 plugs;
    std::optional<std::chrono::milliseconds> backAt;
};

} // namespace sim
