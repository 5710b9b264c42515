// SPDX-License-Identifier: GPL-3.0-or-later

#include "lights.h"

#include "lightscheck.h"
#include "program.h"
#include "questions.h"
#include "scan.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <QJsonArray>

using namespace Qt::StringLiterals;
namespace settings = command::settings;

namespace ctl {

namespace {

constexpr int LevelsPerLine = 16;
constexpr int NumberWidth = 4;
// What the windows step to, either way.
constexpr int LargestOffset = 50;
constexpr int LargestNumber = 0xFFFF;

struct Choice
{
    std::string axis;
    int number = 0;
    int offset = 0;
    bool gains = false;
};

UCHAR axisOf(const Choice &choice)
{
    return choice.axis == "x" ? settings::AxisX : settings::AxisY;
}

QString memberOf(UCHAR axis)
{
    return axis == settings::AxisX ? u"x"_s : u"y"_s;
}

void append(QStringList &lines, const QString &title, const std::vector<int> &values)
{
    lines += title;
    for (size_t first = 0; first < values.size(); first += LevelsPerLine) {
        QString line = QString::number(first).rightJustified(NumberWidth + 2) + u':';
        for (size_t i = first; i < std::min(first + LevelsPerLine, values.size()); ++i)
            line += QString::number(values[i]).rightJustified(NumberWidth);
        lines += line;
    }
}

QJsonArray arrayOf(const std::vector<int> &values)
{
    QJsonArray array;
    for (const int value : values)
        array += value;
    return array;
}

void scanLights(Session &session, const Choice &choice)
{
    session.connectFrame();
    const command::LightCounts counts = choice.gains ? askAdc(session).counts : askCounts(session);
    QStringList lines;
    QJsonObject members;
    for (const UCHAR axis : {settings::AxisX, settings::AxisY}) {
        if (!choice.axis.empty() && axis != axisOf(choice))
            continue;
        const int count = axis == settings::AxisX ? counts.x : counts.y;
        const Levels levels = scanAxis(session, axis, count, choice.gains);
        append(lines, Words::tr("%1: levels of %2 lights").arg(axisName(axis)).arg(count),
               levels.levels);
        QJsonObject member{{u"lights"_s, count}, {u"levels"_s, arrayOf(levels.levels)}};
        if (choice.gains) {
            append(lines, Words::tr("%1: gains").arg(axisName(axis)), levels.gains);
            member[u"gains"_s] = arrayOf(levels.gains);
        }
        members[memberOf(axis)] = member;
    }
    session.answer(lines, members);
}

void tellLight(Session &session, const command::LightReport &report)
{
    QStringList lines = {
        Words::tr("%1 %2: %3")
            .arg(axisName(report.light.axis))
            .arg(report.light.number)
            .arg(report.off ? Words::tr("off") : Words::tr("on")),
        Words::tr("Gain: %1, with an offset of %2").arg(report.agc).arg(report.offset),
        Words::tr("Reading: %1, without the offset %2").arg(report.adc).arg(report.org)};
    session.answer(lines, {{u"axis"_s, memberOf(report.light.axis)},
                           {u"number"_s, report.light.number},
                           {u"off"_s, report.off},
                           {u"offset"_s, report.offset},
                           {u"gain"_s, report.agc},
                           {u"adc"_s, report.adc},
                           {u"org"_s, report.org}});
}

command::LightRequest requestFor(const Choice &choice, UCHAR sub)
{
    return {.sub = sub,
            .light = {axisOf(choice), choice.number},
            .offset = choice.offset,
            .off = false};
}

void showLight(Session &session, const Choice &choice)
{
    session.connectFrame();
    tellLight(session, askLight(session, requestFor(choice, settings::GetLight)));
}

// Writes to a light. Its answer tells how the light is then; an older one may come first, so what
// differs is asked for again.
template <typename Value>
command::LightReport writeLight(Session &session, const command::LightRequest &request,
                                const QString &what, const Value &written,
                                Value command::LightReport::*value)
{
    session.connectFrame();
    session.mark(what);
    command::LightRequest next = request;
    command::LightReport said;
    readBack(
        [&] {
            said = askLight(session, next);
            next.sub = settings::GetLight;
            return said.*value;
        },
        written);
    session.confirmed();
    return said;
}

void setLight(Session &session, const Choice &choice)
{
    const command::LightRequest request = requestFor(choice, settings::SetLight);
    const command::LightReport said = writeLight(session, request,
                                                 Words::tr("an offset of %1 for %2 %3")
                                                     .arg(choice.offset)
                                                     .arg(axisName(request.light.axis))
                                                     .arg(choice.number),
                                                 choice.offset, &command::LightReport::offset);
    if (said.offset != choice.offset)
        throw Failure(Failed, Words::tr("The touch frame was told an offset of %1, and says %2.")
                                  .arg(choice.offset)
                                  .arg(said.offset));
    tellLight(session, said);
}

void switchTo(Session &session, const Choice &choice, bool off)
{
    command::LightRequest request = requestFor(choice, settings::SwitchLight);
    request.off = off;
    const QString what = off ? Words::tr("%1 %2 off") : Words::tr("%1 %2 on");
    const command::LightReport said =
        writeLight(session, request, what.arg(axisName(request.light.axis)).arg(choice.number), off,
                   &command::LightReport::off);
    if (said.off != off)
        throw Failure(Failed, said.off ? Words::tr("The touch frame says that the light is off.")
                                       : Words::tr("The touch frame says that the light is on."));
    tellLight(session, said);
}

void addLight(CLI::App &command, Choice &choice)
{
    command.add_option("axis", choice.axis, "x or y")
        ->required()
        ->type_name("AXIS")
        ->check(CLI::IsMember({"x", "y"}));
    command.add_option("number", choice.number, "Number of the light on its axis, from 0")
        ->required()
        ->type_name("NUMBER")
        ->check(CLI::Range(0, LargestNumber));
}

} // namespace

void addLights(CLI::App &app, Session &session)
{
    CLI::App *lights = app.add_subcommand("lights", "The signal of all lights, and single lights");
    lights->require_subcommand(1);
    auto choice = std::make_shared<Choice>();

    addLightsCheck(*lights, session);

    CLI::App *command = lights->add_subcommand("scan", "Scan the levels of all lights");
    command->add_option("--axis", choice->axis, "One axis only")
        ->type_name("x|y")
        ->check(CLI::IsMember({"x", "y"}));
    command->add_flag("--gains", choice->gains, "The gain of each light too");
    define(*command, session, [&session, choice] { scanLights(session, *choice); });

    command = lights->add_subcommand("show", "Ask how one light is");
    addLight(*command, *choice);
    define(*command, session, [&session, choice] { showLight(session, *choice); });

    command = lights->add_subcommand("set", "Set the offset of a light's gain");
    addLight(*command, *choice);
    command->add_option("offset", choice->offset, "-50 to 50")
        ->required()
        ->type_name("OFFSET")
        ->check(CLI::Range(-LargestOffset, LargestOffset));
    define(*command, session, [&session, choice] { setLight(session, *choice); });

    command = lights->add_subcommand("off", "Switch one light off");
    addLight(*command, *choice);
    define(*command, session, [&session, choice] { switchTo(session, *choice, true); });

    command = lights->add_subcommand("on", "Switch one light on");
    addLight(*command, *choice);
    define(*command, session, [&session, choice] { switchTo(session, *choice, false); });
}

} // namespace ctl
