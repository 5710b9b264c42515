// SPDX-License-Identifier: GPL-3.0-or-later

#include "faultyframe.h"

#include <algorithm>
#include <utility>

namespace sim {

namespace {

constexpr int TornFrom = FrameSize / 2;

Frame torn(Frame frame)
{
    std::fill(frame.begin() + TornFrom, frame.end(), UCHAR(0));
    return frame;
}

} // namespace

FaultyFrame::FaultyFrame(Profile profile, FaultPlan faults, Clock theClock, bool startsPlugged)
    : plan(std::move(faults))
    , clock(theClock)
    , model(std::move(profile), std::move(theClock))
    , in(startsPlugged)
    , plugs(startsPlugged ? 1 : 0)
{
}

Fault FaultyFrame::beginTransfer()
{
    ++count;
    Fault fault = plan.at(count);
    if (replayed) {
        replayed->awake();
        if (const auto absence = replayed->takeAbsence())
            fault = {.kind = Fault::Kind::Unplug, .first = count, .back = absence->back};
    }
    if (fault.kind == Fault::Kind::Unplug)
        unplug(fault.back);
    return fault;
}

Frame FaultyFrame::write(const Frame &frame, const Fault &fault, int length)
{
    const Frame arrived = fault.kind == Fault::Kind::Torn ? torn(frame) : frame;
    if (fault.kind != Fault::Kind::Silent)
        execute(arrived, length);
    if (fault.kind == Fault::Kind::Repeat)
        execute(arrived, length);
    return arrived;
}

void FaultyFrame::execute(const Frame &frame, int length)
{
    if (replayed)
        replayed->command(frame, length);
    // A recording tells no rate.
    if (!replayed || frame[command::offset::Class] == command::SerialBaud)
        model.command(frame, length);
}

FaultyFrame::Report FaultyFrame::read(const Fault &fault)
{
    if (fault.kind == Fault::Kind::Silent || fault.kind == Fault::Kind::Repeat)
        return {lastReport, false};
    const bool fresh = hasReply();
    Frame report = lastReport;
    if (!replayed)
        report = model.report();
    else if (const auto said = replayed->takeReport())
        report = *said;
    lastReport = fault.kind == Fault::Kind::Torn ? torn(report) : report;
    return {lastReport, fresh};
}

bool FaultyFrame::hasReply() const
{
    return replayed ? replayed->isDue() : model.hasReply();
}

std::optional<std::chrono::milliseconds> FaultyFrame::untilReply() const
{
    return replayed ? replayed->untilDue() : std::nullopt;
}

void FaultyFrame::replay(Replay recording)
{
    replayed = std::move(recording);
}

bool FaultyFrame::plug()
{
    backAt.reset();
    if (in)
        return false;
    in = true;
    ++plugs;
    model.restart();
    if (replayed)
        replayed->restart();
    lastReport = command::report(0, 0);
    return true;
}

bool FaultyFrame::unplug(std::optional<std::chrono::milliseconds> back)
{
    backAt = back ? std::optional(clock() + *back) : std::nullopt;
    return std::exchange(in, false);
}

bool FaultyFrame::comeBack()
{
    return backAt && clock() >= *backAt && plug();
}

std::optional<std::chrono::milliseconds> FaultyFrame::untilBack() const
{
    if (!backAt)
        return std::nullopt;
    return std::max(*backAt - clock(), std::chrono::milliseconds(0));
}

} // namespace sim
