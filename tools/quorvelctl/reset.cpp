// SPDX-License-Identifier: GPL-3.0-or-later

#include "reset.h"

#include "program.h"
#include "questions.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <vector>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

void reset(Session &session)
{
    session.connectFrame();
    std::vector<Frame> frames = {command::request(command::OldReset, command::oldreset::Reset)};
    if (!session.isSerial() && session.isCurrentGeneration())
        frames.insert(frames.begin(),
                      command::request(command::Settings, command::settings::Reset));
    bool isSent = false;
    try {
        for (const Frame &frame : frames) {
            session.send(frame, Words::tr("a reset"));
            isSent = true;
        }
        askRotation(session);
    } catch (const Failure &failure) {
        if (failure.code() != NoFrame || !isSent)
            throw;
        // It left the bus for its reset, and comes back in the time that an answer may take.
        session.finish();
        session.options.wait = session.options.timeout;
        session.connectFrame();
        askRotation(session);
    }
    session.confirmed();
    session.answer({Words::tr("The reset was sent, and the touch frame answers.")},
                   {{u"sent"_s, true}, {u"answers"_s, true}});
}

} // namespace

void addReset(CLI::App &app, Session &session)
{
    CLI::App *command = app.add_subcommand("reset", "Restart the frame, and wait until it answers");
    define(*command, session, [&session] { reset(session); });
}

} // namespace ctl
