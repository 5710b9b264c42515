// SPDX-License-Identifier: GPL-3.0-or-later

#include "playback.h"

#include "capture/reader.h"
#include "device/framelog.h"
#include "device/framewords.h"
#include "session.h"
#include "words.h"

using namespace Qt::StringLiterals;
using std::chrono::milliseconds;

namespace ctl {

namespace {

QString wordFor(capture::Over over)
{
    switch (over) {
    case capture::Over::Usb:
        return u"usb"_s;
    case capture::Over::Serial:
        return u"serial"_s;
    case capture::Over::None:
        break;
    }
    return u"none"_s;
}

QString wordFor(capture::Result result)
{
    switch (result) {
    case capture::Result::Done:
        return u"done"_s;
    case capture::Result::Failed:
        return u"failed"_s;
    case capture::Result::Dropped:
        break;
    }
    return u"dropped"_s;
}

QString wordFor(capture::End end)
{
    switch (end) {
    case capture::End::DeviceGone:
        return u"device-gone"_s;
    case capture::End::Replaced:
        return u"replaced"_s;
    case capture::End::Closed:
        break;
    }
    return u"closed"_s;
}

// Why a frame did not arrive; as untranslated as the lines of frames.
QString why(const capture::Record &record)
{
    if (record.kind == capture::Kind::FromFrame)
        return u"it was dropped for its report id"_s;
    return record.result == capture::Result::Failed ? u"the link did not take it"_s
                                                    : u"it was never sent"_s;
}

class Playback
{
public:
    explicit Playback(Session &theSession)
        : session(theSession)
        , log([this] { return now; })
    {
    }

    void tell(const capture::Record &record)
    {
        if (!first)
            first = record.time;
        now = std::chrono::duration_cast<milliseconds>(record.time - *first);
        if (record.lost > 0 && !session.options.json) {
            for (const QString &line :
                 log.note(Words::tr("Packets missing here: %1").arg(record.lost)))
                session.output.print(line);
        }
        switch (record.kind) {
        case capture::Kind::ToFrame:
            tellFrame(u"command"_s, log.command(record.frame),
                      framewords::describeCommand(record.frame), record);
            break;
        case capture::Kind::FromFrame:
            tellFrame(u"report"_s, log.report(record.frame, record.over == capture::Over::Serial),
                      framewords::describeReport(record.frame), record);
            break;
        case capture::Kind::LinkBegan:
            tell(u"linked"_s, log.note(Words::tr("A touch frame is linked.")), record,
                 {{u"port"_s, QString()}});
            break;
        case capture::Kind::LinkEnded:
            tell(u"gone"_s,
                 log.note(record.end == capture::End::DeviceGone
                              ? Words::tr("The touch frame is gone.")
                              : Words::tr("The link to the touch frame was ended.")),
                 record, {{u"end"_s, wordFor(record.end)}});
            break;
        }
    }

private:
    void tellFrame(const QString &event, QStringList lines, const QString &words,
                   const capture::Record &record)
    {
        if (lines.isEmpty())
            return; // read again
        if (record.result != capture::Result::Done)
            lines += log.note(u"              "_s + why(record));
        tell(event, lines, record,
             {{u"words"_s, words},
              {u"bytes"_s, framewords::usedBytes(record.frame)},
              {u"result"_s, wordFor(record.result)}});
    }

    void tell(const QString &event, const QStringList &lines, const capture::Record &record,
              QJsonObject members)
    {
        if (!session.options.json) {
            for (const QString &line : lines)
                session.output.print(line);
            return;
        }
        members[u"time_ms"_s] = qint64(now.count());
        members[u"link"_s] = wordFor(record.over);
        if (record.lost > 0)
            members[u"missing"_s] = qint64(record.lost);
        session.tell({}, event, members);
    }

    Session &session;
    std::optional<std::chrono::microseconds> first;
    milliseconds now{0};
    FrameLog log;
};

} // namespace

void tellRecording(Session &session, const QString &file)
{
    QString problem;
    const auto reader = capture::Reader::open(file, &problem);
    if (!reader)
        throw Failure(WrongUsage, problem);
    Playback playback(session);
    while (const auto record = reader->next()) {
        playback.tell(*record);
        if (!session.output.problem().isEmpty())
            return;
    }
    if (!reader->problem().isEmpty())
        throw Failure(WrongUsage, reader->problem());
}

} // namespace ctl
