// SPDX-License-Identifier: GPL-3.0-or-later

#include "gestures.h"

#include "config/fields.h"
#include "config/xml_class.h"
#include "program.h"
#include "questions.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

struct GivenGestures
{
    std::optional<int> finger;
    std::optional<int> rightButton;
    std::optional<int> holdTime;
    std::optional<int> holdRange;
    std::optional<int> wheel;
    std::optional<int> wheelSensitivity;
};

// What the settings file keeps; nothing when it does not give all.
std::optional<_SETTING_DATA> keptGestures()
{
    // Reading a file that is not there makes one.
    if (!QFileInfo::exists(XML_CLASS::filePath()))
        return {};
    XML_CLASS store;
    const _SETTING_DATA data = store.read_setting();
    return store.gaveWhole(element::Setting) ? std::optional(withinRanges(data)) : std::nullopt;
}

_SETTING_DATA defaultGestures()
{
    return {.all_en = 1,
            .rb_en = 1,
            .rb_duration = 1500,
            .rb_ran = 3,
            .db_speed = 600,
            .db_ran = 40,
            .wheel_en = 1,
            .wheel_sen = 2};
}

QString onOff(int flag)
{
    return flag != 0 ? Words::tr("on") : Words::tr("off");
}

QStringList linesOfGestures(const _SETTING_DATA &data)
{
    return {Words::tr("Finger as an input device: %1").arg(onOff(data.all_en)),
            Words::tr("Right button by press and hold: %1, after %2 ms, within %3")
                .arg(onOff(data.rb_en))
                .arg(data.rb_duration)
                .arg(data.rb_ran),
            Words::tr("Wheel: %1, sensitivity %2 (1 is the highest)")
                .arg(onOff(data.wheel_en))
                .arg(data.wheel_sen)};
}

QJsonObject jsonOfGestures(const _SETTING_DATA &data)
{
    return {{u"finger"_s, data.all_en != 0},  {u"right_button"_s, data.rb_en != 0},
            {u"hold_ms"_s, data.rb_duration}, {u"hold_range"_s, data.rb_ran},
            {u"wheel"_s, data.wheel_en != 0}, {u"wheel_sensitivity"_s, data.wheel_sen}};
}

void showGestures(Session &session)
{
    const auto data = keptGestures();
    const QString file = XML_CLASS::filePath();
    QStringList lines;
    if (data)
        lines = linesOfGestures(*data)
                << Words::tr("This is what %1 keeps: a touch frame does not tell its gestures.")
                       .arg(file);
    else
        lines = {
            Words::tr("%1 keeps no gestures, and a touch frame does not tell its own.").arg(file)};
    session.answer(lines, {{u"kept"_s, data ? QJsonValue(jsonOfGestures(*data)) : QJsonValue()},
                           {u"file"_s, file}});
}

// Sends them, and keeps them as the window does, which sends them at every connection.
void applyGestures(Session &session, const _SETTING_DATA &data)
{
    session.connectFrame();
    session.send(command::Gestures{.allEnabled = data.all_en,
                                   .rightButtonEnabled = data.rb_en,
                                   .rightButtonDuration = data.rb_duration,
                                   .rightButtonRange = data.rb_ran,
                                   .wheelEnabled = data.wheel_en,
                                   .wheelSensitivity = data.wheel_sen}
                     .encode(),
                 Words::tr("gestures"));
    // The frame does not tell them. That it answers behind them is all that can be known.
    askRotation(session);
    session.confirmed();
    XML_CLASS store;
    store.write_setting(data);
    if (keptGestures() != data)
        throw Failure(Failed, Words::tr("The gestures were sent, but %1 cannot be written: they "
                                        "are not kept.")
                                  .arg(XML_CLASS::filePath()));
    QStringList lines = linesOfGestures(data)
                        << Words::tr("Sent to the touch frame, which does not tell them, and kept "
                                     "in %1.")
                               .arg(XML_CLASS::filePath());
    if (session.isSerial())
        lines += Words::tr("A serial line does not carry the wheel's sensitivity.");
    session.answer(lines, {{u"sent"_s, jsonOfGestures(data)},
                           {u"file"_s, XML_CLASS::filePath()},
                           {u"wheel_sensitivity_carried"_s, !session.isSerial()}});
}

void setGestures(Session &session, const GivenGestures &given)
{
    _SETTING_DATA data = keptGestures().value_or(defaultGestures());
    data.all_en = given.finger.value_or(data.all_en);
    data.rb_en = given.rightButton.value_or(data.rb_en);
    data.rb_duration = given.holdTime.value_or(data.rb_duration);
    data.rb_ran = given.holdRange.value_or(data.rb_ran);
    data.wheel_en = given.wheel.value_or(data.wheel_en);
    data.wheel_sen = given.wheelSensitivity.value_or(data.wheel_sen);
    applyGestures(session, data);
}

void addSwitch(CLI::App &command, const char *option, std::optional<int> &value, const char *help)
{
    command
        .add_option_function<std::string>(
            option, [&value](const std::string &word) { value = word == "on"; }, help)
        ->type_name("on|off")
        ->check(CLI::IsMember({"on", "off"}));
}

void addNumber(CLI::App &command, const char *option, std::optional<int> &value, int least,
               int most, const char *help)
{
    command
        .add_option_function<int>(
            option, [&value](int number) { value = number; }, help)
        ->type_name("N")
        ->check(CLI::Range(least, most));
}

} // namespace

void addGestures(CLI::App &app, Session &session)
{
    CLI::App *gestures = app.add_subcommand("gestures", "How touches become mouse actions");
    gestures->require_subcommand(1);
    define(*gestures->add_subcommand("show", "Show what the settings file keeps"), session,
           [&session] { showGestures(session); });
    CLI::App *command =
        gestures->add_subcommand("set", "Change some, send all to the frame and keep them");
    auto given = std::make_shared<GivenGestures>();
    addSwitch(*command, "--finger", given->finger, "The finger is an input device");
    addSwitch(*command, "--right-button", given->rightButton,
              "Press and hold gives the right button");
    addNumber(*command, "--hold-time", given->holdTime, 500, 2500, "How long, in milliseconds");
    addNumber(*command, "--hold-range", given->holdRange, 1, 5, "Movement allowed meanwhile");
    addSwitch(*command, "--wheel", given->wheel, "The wheel gesture");
    addNumber(*command, "--wheel-sensitivity", given->wheelSensitivity, 1, 3,
              "Its sensitivity, 1 is the highest");
    define(*command, session, [&session, given] { setGestures(session, *given); });
    define(*gestures->add_subcommand("defaults", "Send the defaults to the frame and keep them"),
           session, [&session] { applyGestures(session, defaultGestures()); });
}

} // namespace ctl
