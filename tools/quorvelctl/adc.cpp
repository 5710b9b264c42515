// SPDX-License-Identifier: GPL-3.0-or-later

#include "adc.h"

#include "program.h"
#include "questions.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr int LargestValue = 0xFFFF;

struct Line
{
    const char *option;
    const char *member; // of the document
    const char *help;
    int command::AdcLines::*value;
};

constexpr std::array Lines = {
    Line{"--min", "min", "Smallest reading", &command::AdcLines::min},
    Line{"--max", "max", "Largest reading", &command::AdcLines::max},
    Line{"--edge-min", "edge_min", "Smallest reading at the edges", &command::AdcLines::minEdge},
    Line{"--edge-max", "edge_max", "Largest reading at the edges", &command::AdcLines::maxEdge},
    Line{"--threshold", "threshold", "Threshold", &command::AdcLines::threshold},
    Line{"--edge-threshold", "edge_threshold", "Threshold at the edges",
         &command::AdcLines::edgeThreshold},
};

using GivenLines = std::array<std::optional<int>, Lines.size()>;

void tellAdc(Session &session, const command::AdcReport &report)
{
    const command::AdcLines &lines = report.lines;
    QJsonObject values;
    for (const Line &line : Lines)
        values[QLatin1StringView(line.member)] = lines.*line.value;
    session.answer(
        {Words::tr("ADC: %1 to %2, threshold %3")
             .arg(lines.min)
             .arg(lines.max)
             .arg(lines.threshold),
         Words::tr("At the edges: %1 to %2, threshold %3")
             .arg(lines.minEdge)
             .arg(lines.maxEdge)
             .arg(lines.edgeThreshold),
         Words::tr("Lights: %1 on X, %2 on Y").arg(report.counts.x).arg(report.counts.y)},
        {{u"adc"_s, values}, {u"lights_x"_s, report.counts.x}, {u"lights_y"_s, report.counts.y}});
}

// What is read here is written back. A serial line may change bytes, and nothing in a frame tells.
command::AdcLines readSurely(Session &session)
{
    constexpr int Attempts = 4;
    command::AdcLines lines = askAdc(session).lines;
    for (int attempt = 0; session.isSerial() && attempt < Attempts; ++attempt) {
        const command::AdcLines again = askAdc(session).lines;
        if (again == lines)
            return lines;
        lines = again;
    }
    if (session.isSerial())
        throw Failure(Failed, Words::tr("The touch frame says other ADC settings each time that it "
                                        "is asked: nothing was sent."));
    return lines;
}

void setAdc(Session &session, const GivenLines &given)
{
    if (std::none_of(given.begin(), given.end(), [](const auto &one) { return one.has_value(); }))
        throw Failure(WrongUsage, Words::tr("Say what to set, such as --threshold 1000. See "
                                            "quorvelctl adc set --help."));
    session.connectFrame();
    command::AdcLines wanted = readSurely(session);
    for (size_t i = 0; i < Lines.size(); ++i)
        wanted.*Lines[i].value = given[i].value_or(wanted.*Lines[i].value);
    if (wanted.min > wanted.max)
        throw Failure(WrongUsage, Words::tr("The smallest ADC value, %1, would be above the "
                                            "largest, %2: nothing was sent.")
                                      .arg(wanted.min)
                                      .arg(wanted.max));
    if (wanted.minEdge > wanted.maxEdge)
        throw Failure(WrongUsage, Words::tr("The smallest ADC value at the edges, %1, would be "
                                            "above the largest, %2: nothing was sent.")
                                      .arg(wanted.minEdge)
                                      .arg(wanted.maxEdge));
    session.send(wanted.encode(), Words::tr("ADC settings"));
    command::AdcReport said;
    readBack(
        [&] {
            said = askAdc(session);
            return said.lines;
        },
        wanted);
    session.confirmed();
    for (const Line &line : Lines) {
        if (said.lines.*line.value != wanted.*line.value)
            throw Failure(Failed, Words::tr("The touch frame was told %1 %2, and says %3.")
                                      .arg(QLatin1StringView(line.option))
                                      .arg(wanted.*line.value)
                                      .arg(said.lines.*line.value));
    }
    tellAdc(session, said);
}

} // namespace

void addAdc(CLI::App &app, Session &session)
{
    CLI::App *adc = app.add_subcommand("adc", "Between which readings the frame keeps its lights");
    adc->require_subcommand(1);
    define(*adc->add_subcommand("show", "Ask the frame for its ADC settings"), session, [&session] {
        session.connectFrame();
        tellAdc(session, askAdc(session));
    });
    CLI::App *command =
        adc->add_subcommand("set", "Change some of them, and ask what the frame kept");
    auto given = std::make_shared<GivenLines>();
    for (size_t i = 0; i < Lines.size(); ++i)
        command
            ->add_option_function<int>(
                Lines[i].option, [given, i](int value) { (*given)[i] = value; }, Lines[i].help)
            ->type_name("N")
            ->check(CLI::Range(0, LargestValue));
    define(*command, session, [&session, given] { setAdc(session, *given); });
}

} // namespace ctl
