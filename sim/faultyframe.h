#pragma once

#include "faultplan.h"
#include "firmware.h"

namespace sim {

// A touch frame on a bad cable: the firmware, the plan that spoils transfers, and whether the
// cable is in. Every door to the simulated frame goes through one of these. No locks of its own.
class FaultyFrame
{
public:
    struct Report
    {
        Frame bytes;
        bool fresh; // false: the report before, read again
    };

    FaultyFrame(Profile profile, FaultPlan faults, Clock clock, bool startsPlugged);

    // Counts a transfer and tells what happens to it. An unplug has then happened already.
    Fault beginTransfer();
    // Ends a transfer that the fault lets through. Returns the command as it arrived; length is
    // how many of its bytes the link carries.
    Frame write(const Frame &frame, const Fault &fault, int length = FrameSize);
    Report read(const Fault &fault);

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
    FaultPlan plan;
    Clock clock;
    Firmware model;
    Frame lastReport = command::report(0, 0);
    quint64 count = 0;
    bool in;
    quint64 plugs;
    std::optional<std::chrono::milliseconds> backAt;
};

} // namespace sim
