// SPDX-License-Identifier: GPL-3.0-or-later

#include "rotation.h"

#include "program.h"
#include "questions.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr int QuarterTurn = 90; // degrees
constexpr UCHAR LargestCode = 3;

// A frame may say anything.
QString degreesOf(UCHAR code)
{
    if (code > LargestCode)
        return Words::tr("unknown (%1)", "rotation").arg(code);
    return Words::tr("%1 degrees").arg(code * QuarterTurn);
}

QJsonValue jsonOfCode(UCHAR code)
{
    return code > LargestCode ? QJsonValue() : QJsonValue(code * QuarterTurn);
}

void showRotation(Session &session)
{
    session.connectFrame();
    const Rotations rotations = askRotation(session);
    session.answer({Words::tr("Rotation: %1").arg(degreesOf(rotations.now)),
                    Words::tr("Default: %1", "rotation").arg(degreesOf(rotations.standard))},
                   {{u"degrees"_s, jsonOfCode(rotations.now)},
                    {u"default_degrees"_s, jsonOfCode(rotations.standard)}});
}

void setRotation(Session &session, int degrees)
{
    session.connectFrame();
    const auto code = UCHAR(degrees / QuarterTurn);
    session.send(command::RotationCommand{code}.encode(),
                 Words::tr("a rotation of %1 degrees").arg(degrees));
    const UCHAR said = readBack([&session] { return askRotation(session).now; }, code);
    session.confirmed();
    if (said != code)
        throw Failure(Failed, Words::tr("The touch frame was told to turn by %1 degrees, and says: "
                                        "%2.")
                                  .arg(degrees)
                                  .arg(degreesOf(said)));
    session.answer({Words::tr("Rotation: %1").arg(degreesOf(said))},
                   {{u"degrees"_s, jsonOfCode(said)}});
}

} // namespace

void addRotation(CLI::App &app, Session &session)
{
    CLI::App *rotation =
        app.add_subcommand("rotation", "By how much the frame turns what it reports");
    rotation->require_subcommand(1);
    define(*rotation->add_subcommand("show", "Ask the frame for its rotation"), session,
           [&session] { showRotation(session); });
    CLI::App *command = rotation->add_subcommand("set", "Turn, and ask whether it did");
    auto degrees = std::make_shared<int>(0);
    command->add_option("degrees", *degrees, "0, 90, 180 or 270")
        ->required()
        ->type_name("DEGREES")
        ->check(CLI::IsMember({0, 90, 180, 270}));
    define(*command, session, [&session, degrees] { setRotation(session, *degrees); });
}

} // namespace ctl
