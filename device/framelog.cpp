// SPDX-License-Identifier: GPL-3.0-or-later

#include "framelog.h"

#include "framewords.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int MsPerSecond = 1000;
constexpr int StampWidth = 10;

} // namespace

FrameLog::FrameLog(Clock theClock)
    : clock(std::move(theClock))
{
}

QStringList FrameLog::command(const Frame &frame)
{
    return {stamped(u"host > frame  %1  [%2]"_s.arg(framewords::describeCommand(frame),
                                                    framewords::usedBytes(frame)))};
}

QStringList FrameLog::report(const Frame &frame, bool fresh)
{
    if (any && !fresh && frame == last) {
        ++repeats;
        return {};
    }
    QStringList lines;
    if (repeats > 0)
        lines += stamped(u"frame > host  the same again, %1 x"_s.arg(repeats));
    repeats = 0;
    any = true;
    last = frame;
    lines += stamped(u"frame > host  %1  [%2]"_s.arg(framewords::describeReport(frame),
                                                     framewords::usedBytes(frame)));
    return lines;
}

QStringList FrameLog::note(const QString &words)
{
    return {stamped(words)};
}

QString FrameLog::stamped(const QString &words) const
{
    const qint64 ms = clock().count();
    const QString stamp =
        u"%1.%2"_s.arg(ms / MsPerSecond).arg(ms % MsPerSecond, 3, 10, QLatin1Char('0'));
    return stamp.rightJustified(StampWidth) + u"  "_s + words;
}
