// SPDX-License-Identifier: GPL-3.0-or-later

#include "record.h"

#include "capture/recorder.h"
#include "program.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr auto ProgressPeriod = 500ms;

// Until the frame goes or the time is over.
void recordLink(Session &session, QDeadlineTimer end)
{
    while (!end.hasExpired()) {
        const QDeadlineTimer next(ProgressPeriod);
        while (session.report(std::min(next, end)))
            ;
        session.output.progress(
            Words::tr("Packets recorded: %1").arg(session.recording()->written()));
    }
}

void recordUntil(Session &session, QDeadlineTimer end)
{
    session.connectFrame();
    do {
        try {
            recordLink(session, end);
            return;
        } catch (const Failure &failure) {
            if (failure.code() != NoFrame)
                throw;
        }
    } while (session.connectNextFrame(end));
}

void record(Session &session, QDeadlineTimer end)
{
    try {
        recordUntil(session, end);
    } catch (const Failure &failure) {
        // That is how a recording ends.
        if (failure.code() < SignalBase)
            throw;
    }
    session.finish();
    session.output.progress({});
    const capture::Recorder &recording = *session.recording();
    if (recording.lost() > 0) {
        throw Failure(NoOutput, Words::tr("%1 packets are missing in the recording %2, which has "
                                          "%3.")
                                    .arg(recording.lost())
                                    .arg(recording.path())
                                    .arg(recording.written()));
    }
    session.answer(
        {Words::tr("Packets recorded into %1: %2").arg(recording.path()).arg(recording.written())},
        {{u"file"_s, recording.path()}, {u"packets"_s, qint64(recording.written())}});
}

} // namespace

void addRecord(CLI::App &app, Session &session)
{
    CLI::App *command = app.add_subcommand(
        "record", "Record what the frame says into a file, until somebody ends the program");
    auto time = std::make_shared<std::optional<std::chrono::milliseconds>>();
    command
        ->add_option_function<std::string>(
            "FILE",
            [&session](const std::string &file) {
                session.options.recordFile = QString::fromStdString(file);
            },
            "The file; a recording there is replaced, anything else is not")
        ->required();
    addSeconds(*command, "--for", "End after this time",
               [time](std::chrono::milliseconds length) { *time = length; });
    define(*command, session, [&session, time] {
        record(session, *time ? QDeadlineTimer(**time) : QDeadlineTimer(QDeadlineTimer::Forever));
    });
}

} // namespace ctl
