#pragma once

#include "sim/faultplan.h"
#include "sim/firmware.h"

#include <QStringList>

namespace sim {

// A frame in words, without its direction: "rotation: set 90 degrees".
// Reports and log lines stay untranslated: they are a record that scripts and support read.
QString describeCommand(const Frame &frame);
QString describeReport(const Frame &frame);
// The used bytes from byte 1 on: "A7 00 02 00 02".
QString usedBytes(const Frame &frame);

// Turns the traffic with a frame into lines such as
//    12.345 host > frame  rotation: set 90 degrees  [A7 00 02 00 01]
// A report that is only read again gives no line; the next different one is preceded by how
// often that happened.
class FrameLog
{
public:
    explicit FrameLog(Clock clock);

    QStringList command(const Frame &frame);
    QStringList report(const Frame &frame, bool fresh);
    QStringList fault(const Fault &fault, quint64 transfer);
    QStringList note(const QString &words);

private:
    QString stamped(const QString &words) const;

    Clock clock;
    Frame last{};
    bool any = false;
    quint64 repeats = 0;
};

} // namespace sim
