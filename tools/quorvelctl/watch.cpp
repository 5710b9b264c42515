// SPDX-License-Identifier: GPL-3.0-or-later

#include "watch.h"

#include "device/framelog.h"
#include "device/framewords.h"
#include "playback.h"
#include "program.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr int MostReports = 1'000'000'000;

class Watch
{
public:
    Watch(Session &theSession, QDeadlineTimer theEnd, int theCount)
        : session(theSession)
        , end(theEnd)
        , count(theCount)
        , log([this] { return std::chrono::milliseconds(time.elapsed()); })
    {
        time.start();
    }

    void run();

private:
    bool isOver() const
    {
        return end.hasExpired() || count == 0 || !session.output.problem().isEmpty();
    }
    void watchLink();
    void tell(const Frame &report);
    void tell(const QString &event, const QString &line, QJsonObject members);

    Session &session;
    const QDeadlineTimer end;
    int count; // reports still to come; negative: no matter how many
    QElapsedTimer time;
    FrameLog log;
};

void Watch::run()
{
    session.connectFrame();
    try {
        while (!isOver())
            watchLink();
    } catch (const Failure &failure) {
        // That is how a watch ends.
        if (failure.code() < SignalBase)
            throw;
    }
}

// Watches one frame until it goes, and waits for the next.
void Watch::watchLink()
{
    const QString port = session.frameLink().state().port;
    tell(u"linked"_s,
         port.isEmpty() ? Words::tr("A touch frame is linked.")
                        : Words::tr("A touch frame is linked at %1.").arg(port),
         {{u"port"_s, port}});
    try {
        while (!isOver()) {
            if (const auto said = session.report(end))
                tell(said->frame);
        }
        return;
    } catch (const Failure &failure) {
        if (failure.code() != NoFrame)
            throw;
    }
    tell(u"gone"_s, Words::tr("The touch frame is gone."), {});
    session.connectNextFrame(end);
}

void Watch::tell(const Frame &report)
{
    const QStringList lines = log.report(report, session.isSerial());
    if (lines.isEmpty())
        return;
    if (count > 0)
        --count;
    if (session.options.json) {
        tell(u"report"_s, {},
             {{u"words"_s, framewords::describeReport(report)},
              {u"bytes"_s, framewords::usedBytes(report)}});
        return;
    }
    for (const QString &line : lines)
        session.output.print(line);
}

void Watch::tell(const QString &event, const QString &line, QJsonObject members)
{
    if (!session.options.json) {
        for (const QString &stamped : log.note(line))
            session.output.print(stamped);
        return;
    }
    members[u"time_ms"_s] = time.elapsed();
    session.tell({}, event, members);
}

} // namespace

void addWatch(CLI::App &app, Session &session)
{
    CLI::App *command = app.add_subcommand(
        "watch", "Tell what the frame says, in words, until somebody ends the program");
    struct Limits
    {
        std::optional<std::chrono::milliseconds> time;
        int count = -1;
        std::string recording;
    };
    auto limits = std::make_shared<Limits>();
    addSeconds(*command, "--for", "End after this time",
               [limits](std::chrono::milliseconds time) { limits->time = time; });
    command->add_option("--count", limits->count, "End after so many reports that differ")
        ->type_name("N")
        ->check(CLI::Range(1, MostReports));
    command
        ->add_option("--from", limits->recording,
                     "Tell what a recording holds instead, all of it and at once")
        ->type_name("FILE")
        ->excludes("--for", "--count");
    define(*command, session, [&session, limits] {
        if (!limits->recording.empty()) {
            tellRecording(session, QString::fromStdString(limits->recording));
            return;
        }
        const QDeadlineTimer end =
            limits->time ? QDeadlineTimer(*limits->time) : QDeadlineTimer(QDeadlineTimer::Forever);
        Watch(session, end, limits->count).run();
    });
}

} // namespace ctl
