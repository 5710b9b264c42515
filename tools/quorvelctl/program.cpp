// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include "adc.h"
#include "bundle.h"
#include "calibrate.h"
#include "doctor.h"
#include "gestures.h"
#include "lights.h"
#include "list.h"
#include "metrics.h"
#include "record.h"
#include "reset.h"
#include "rotation.h"
#include "session.h"
#include "status.h"
#include "versions.h"
#include "watch.h"
#include "words.h"

#include "device/version.h"

#include <CLI/CLI.hpp>

#include <sstream>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr double LongestWaitS = 86400;

// The C library's functions follow the user's locale, and "0.5" is no number in some.
std::chrono::milliseconds seconds(const std::string &text)
{
    bool isNumber = false;
    const double value = QByteArray::fromStdString(text).toDouble(&isNumber);
    if (!isNumber || !(value >= 0) || value > LongestWaitS)
        throw CLI::ValidationError(Words::tr("%1 is no number of seconds from 0 to %2")
                                       .arg(QString::fromStdString(text))
                                       .arg(LongestWaitS)
                                       .toStdString());
    return std::chrono::milliseconds(qint64(value * MsPerSecond));
}

BaudRateType rateOf(const std::string &text)
{
    QStringList all;
    for (int number = BAUD50; number <= BAUD256000; ++number) {
        const QString rate = QString::number(bitsPerSecond(BaudRateType(number)));
        if (rate == QString::fromStdString(text))
            return BaudRateType(number);
        all += rate;
    }
    throw CLI::ValidationError(Words::tr("%1 is no rate of a touch frame; there are %2")
                                   .arg(QString::fromStdString(text), all.join(u", "_s))
                                   .toStdString());
}

QString nameOfCommand(const CLI::App &command)
{
    const QString name = QString::fromStdString(command.get_name());
    const CLI::App *parent = command.get_parent();
    return parent && parent->get_parent() ? nameOfCommand(*parent) + u' ' + name : name;
}

void addOptions(CLI::App &app, Options &options)
{
    app.add_flag("--json", options.json, "Say it as JSON, for programs");
    // On a machine whose frame is on a serial port nobody wants to name it each time.
    options.port = qEnvironmentVariable("QUORVELCTL_PORT");
    auto *usb = app.add_option_function<std::string>(
        "--usb",
        [&options](const std::string &node) {
            options.usb = QString::fromStdString(node);
            options.port.clear();
        },
        "The frame on USB at this node, such as /dev/usb/hiddev0");
    usb->type_name("NODE");
    app.add_option_function<std::string>(
           "--port",
           [&options](const std::string &path) { options.port = QString::fromStdString(path); },
           "The frame on this serial port, such as /dev/ttyUSB0; QUORVELCTL_PORT if not given")
        ->type_name("PATH")
        ->excludes(usb);
    app.add_option_function<std::string>(
           "--rate", [&options](const std::string &rate) { options.rate = rateOf(rate); },
           "Bits per second that it is told to use there, 9600 if not given")
        ->type_name("N")
        ->excludes(usb);
    addSeconds(app, "--timeout", "How long each answer of the frame may take, 3 if not given",
               [&options](std::chrono::milliseconds time) { options.timeout = time; });
    app.add_flag("--wait", options.waitsForever, "Wait until a frame is plugged in");
    addSeconds(app, "--wait-at-most", "The same, but no longer than this",
               [&options](std::chrono::milliseconds time) { options.wait = time; });
    app.add_option_function<std::string>(
           "--record",
           [&options](const std::string &file) {
               options.recordFile = QString::fromStdString(file);
           },
           "Record what travels to and from the frame meanwhile")
        ->type_name("FILE");
}

// Tells what went wrong, and of what has been sent by then.
int tell(const Failure &failure, Session &session)
{
    QString sentence = failure.why();
    if (!session.whatIsUnconfirmed().isEmpty())
        sentence = Words::tr("%1 This had been sent, and whether the touch frame has it is not "
                             "known: %2.")
                       .arg(failure.why(), session.whatIsUnconfirmed());
    session.output.complain(u"quorvelctl: "_s + sentence);
    if (session.options.json) {
        QJsonObject error{{u"code"_s, failure.code()},
                          {u"name"_s, QString::fromLatin1(nameOf(failure.code()))},
                          {u"message"_s, sentence}};
        if (!session.whatIsUnconfirmed().isEmpty())
            error[u"unconfirmed"_s] = session.whatIsUnconfirmed();
        session.output.print(
            QJsonObject{{u"command"_s, session.command()}, {u"ok"_s, false}, {u"error"_s, error}});
    }
    return failure.code();
}

int parse(CLI::App &app, const QStringList &arguments, Session &session)
{
    std::vector<std::string> reversed;
    for (const QString &argument : arguments)
        reversed.insert(reversed.begin(), argument.toStdString());
    try {
        app.parse(reversed);
        return session.answeredWith();
    } catch (const CLI::ParseError &error) {
        std::ostringstream out;
        std::ostringstream err;
        if (app.exit(error, out, err) == 0) {
            session.output.print(QString::fromStdString(out.str()).trimmed());
            return Done;
        }
        session.options.json = arguments.contains(u"--json"_s);
        return tell(
            {WrongUsage,
             Words::tr("%1. See quorvelctl --help.").arg(QString::fromStdString(error.what()))},
            session);
    }
}

} // namespace

void define(CLI::App &command, Session &session, std::function<void()> work)
{
    command.callback([&command, &session, work = std::move(work)] {
        session.begin(nameOfCommand(command));
        if (session.options.rate && !session.isSerial())
            throw Failure(WrongUsage, Words::tr("--rate is for a frame on a serial port. See "
                                                "quorvelctl --help."));
        work();
    });
}

void addSeconds(CLI::App &command, const std::string &option, const std::string &help,
                std::function<void(std::chrono::milliseconds)> take)
{
    command
        .add_option_function<std::string>(
            option, [take = std::move(take)](const std::string &text) { take(seconds(text)); },
            help)
        ->type_name("SECONDS");
}

int run(const QStringList &arguments, Session &session)
{
    CLI::App app("The service tool for infrared touch frames, from the command line.",
                 "quorvelctl");
    app.set_version_flag("--version", "quorvelctl " QUORVEL_VERSION, "Show the version");
    app.require_subcommand(1);
    app.fallthrough();
    addOptions(app, session.options);
    addBundle(app, session);
    addDoctor(app, session);
    addList(app, session);
    addMetrics(app, session);
    addStatus(app, session);
    addVersions(app, session);
    addGestures(app, session);
    addRotation(app, session);
    addCalibrate(app, session);
    addReset(app, session);
    addLights(app, session);
    addAdc(app, session);
    addWatch(app, session);
    addRecord(app, session);

    int code = Done;
    try {
        code = parse(app, arguments, session);
    } catch (const Failure &failure) {
        code = tell(failure, session);
    }
    session.finish();
    if ((code != Done && code != session.answeredWith()) || session.output.problem().isEmpty())
        return code;
    session.output.complain(
        Words::tr("quorvelctl: The output cannot be written: %1.").arg(session.output.problem()));
    return NoOutput;
}

} // namespace ctl
