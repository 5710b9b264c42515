// SPDX-License-Identifier: GPL-3.0-or-later

#include "capture/reader.h"
#include "capture/record.h"
#include "demand.h"
#include "sim/replay.h"

#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;
using capture::Record;

namespace {

std::vector<Record> recordsIn(const unsigned char *bytes, size_t size)
{
    std::vector<Record> records;
    QString problem;
    std::FILE *file = ::fmemopen(const_cast<unsigned char *>(bytes), size, "rb");
    const auto reader = file ? capture::Reader::read(file, u"input"_s, &problem) : nullptr;
    demand(!file || reader || !problem.isEmpty(), "what is refused has a reason");
    while (const auto record = reader ? reader->next() : std::nullopt)
        records.push_back(*record);
    if (reader) {
        demand(!reader->next(), "the end stays the end");
        demand(!reader->isCutShort() || reader->problem().isEmpty(), "it ends for one reason");
        demand(records.size() * 28 <= size, "no record comes from nowhere");
    }
    return records;
}

} // namespace

// Any bytes are read as a recording up to where they are none, and a host that follows what was
// read finds every command expected, and is told no end of nothing.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *input, size_t size)
{
    const std::vector<Record> records = recordsIn(input, size);
    std::vector<Frame> commands;
    for (const Record &record : records) {
        const QByteArray packet = capture::encode(record);
        demand(capture::decode(packet, record.time) == record, "a record is written as it is read");
        if (record.kind == capture::Kind::ToFrame && record.result != capture::Result::Dropped)
            commands.push_back(record.frame);
    }

    std::chrono::milliseconds now{0};
    sim::Replay replay(records, [&now] { return now; });
    replay.restart();
    for (const Frame &command : commands)
        replay.command(command);
    demand(replay.departures() == 0, "who sends what was sent departs from nothing");
    demand(replay.replayed() == replay.commands(), "everything came when it was expected");
    size_t said = 0;
    while (const auto wait = replay.untilDue()) {
        demand(*wait <= sim::Replay::LongestDelay, "nobody waits for longer than that");
        now += *wait;
        demand(replay.isDue(), "what was waited for is due");
        const bool taken = replay.takeReport() || replay.takeAbsence();
        demand(taken, "what is due can be taken");
        demand(++said <= records.size(), "no more is said than was said then");
    }
    return 0;
}
