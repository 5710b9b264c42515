// SPDX-License-Identifier: GPL-3.0-or-later

#include "calibrate.h"

#include "config/lastcalibration.h"
#include "device/calibrationsteps.h"
#include "program.h"
#include "questions.h"
#include "session.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <QRegularExpression>

#include <array>
#include <optional>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr auto DefaultTouchTime = 30s;
constexpr auto AnswerTime = 30s;
constexpr int LargestPixel = 0xFFFF;

struct Wishes
{
    CalibrationScreen area{{}, {}};
    std::chrono::milliseconds touchTime = DefaultTouchTime;
    bool save = false;
    bool discard = false;
};

// "1280x800+1280+0", as X servers write it, or the size alone.
std::optional<QRect> rectangle(const std::string &text)
{
    static const QRegularExpression form(
        QRegularExpression::anchoredPattern(uR"((\d+)x(\d+)(?:\+(\d+)\+(\d+))?)"_s));
    const auto match = form.match(QString::fromStdString(text));
    std::array<int, 4> numbers{};
    for (int i = 0; i < int(numbers.size()); ++i) {
        const QString digits = match.captured(i + 1);
        bool isNumber = digits.isEmpty();
        if (!isNumber)
            numbers[size_t(i)] = digits.toInt(&isNumber);
        if (!isNumber || numbers[size_t(i)] > LargestPixel)
            return {};
    }
    const QRect rect(numbers[2], numbers[3], numbers[0], numbers[1]);
    return match.hasMatch() && !rect.isEmpty() ? std::optional(rect) : std::nullopt;
}

// However a calibration is left, the frame is told what becomes of it.
class Calibration
{
public:
    Calibration(Session &theSession, const Wishes &theWishes)
        : session(theSession)
        , wishes(theWishes)
    {
    }

    void run();

private:
    using Event = CalibrationSteps::Event;

    void begin();
    void touchTargets();
    Event nextEvent(std::chrono::milliseconds patience, const QString &otherwise);
    void echo();
    void showTarget();
    bool isToBeSaved();
    void end(bool save);
    QString accuracy() const;

    Session &session;
    const Wishes &wishes;
    CalibrationSteps steps;
    const QString what = Words::tr("a calibration that has begun");
};

void Calibration::run()
{
    session.connectFrame();
    session.mark(what);
    bool save = false;
    try {
        begin();
        touchTargets();
        save = isToBeSaved();
    } catch (const Failure &failure) {
        // A frame on USB that is gone has forgotten what was not saved.
        if (failure.code() == NoFrame && !session.isSerial()) {
            session.confirmed();
            throw;
        }
        if (!session.sendAtLast(CalibrationSteps::resetFrame()))
            throw;
        session.confirmed();
        throw Failure(failure.code(),
                      Words::tr("%1 The calibration was discarded.").arg(failure.why()));
    }
    end(save);
}

void Calibration::begin()
{
    const auto hasBegun = [](const Frame &report) {
        const auto step = command::CalibrationStep::decode(report);
        return step && step->step == command::calibration::Begin;
    };
    session.ask(CalibrationSteps::beginFrame(), hasBegun);
    steps.begin();
}

void Calibration::touchTargets()
{
    const QString stuck = Words::tr("The touch frame does not go on with the calibration.");
    const QString untouched = Words::tr("Nobody touched the target within %1 s.")
                                  .arg(std::chrono::duration<double>(wishes.touchTime).count());
    Event event = nextEvent(session.options.timeout, stuck);
    while (event == Event::Target) {
        echo();
        showTarget();
        event = nextEvent(wishes.touchTime, untouched);
    }
    echo();
    nextEvent(session.options.timeout, stuck);
}

Calibration::Event Calibration::nextEvent(std::chrono::milliseconds patience,
                                          const QString &otherwise)
{
    const QDeadlineTimer deadline(patience);
    while (const auto said = session.report(deadline)) {
        const Event event = steps.take(said->frame);
        if (event != Event::Nothing)
            return event;
    }
    throw session.overdue(otherwise);
}

void Calibration::echo()
{
    session.send(steps.echo(wishes.area), what);
}

void Calibration::showTarget()
{
    const int number = steps.target() + 1;
    const QPoint pixel =
        wishes.area.screen.topLeft() + wishes.area.targets().at(size_t(steps.target()));
    session.tell(
        Words::tr("Touch %1,%2 (target %3 of 4)").arg(pixel.x()).arg(pixel.y()).arg(number),
        u"target"_s, {{u"target"_s, number}, {u"x"_s, pixel.x()}, {u"y"_s, pixel.y()}});
    if (!session.output.problem().isEmpty())
        throw Failure(NoOutput,
                      Words::tr("The targets cannot be shown: %1.").arg(session.output.problem()));
}

QString Calibration::accuracy() const
{
    if (steps.deviation() > CalibrationSteps::LargestGoodDeviation)
        return Words::tr("The touches were %1% off: better calibrate again.")
            .arg(steps.deviation());
    return Words::tr("Calibration accuracy: %1%").arg(100 - steps.deviation());
}

bool Calibration::isToBeSaved()
{
    if (wishes.save || wishes.discard)
        return wishes.save;
    session.tell(Words::tr("%1 Save it? [y/N]", "calibration").arg(accuracy()), u"question"_s,
                 {{u"deviation_percent"_s, steps.deviation()}});
    const QString said = session.readLine(QDeadlineTimer(AnswerTime)).value_or(QString());
    return said.trimmed().startsWith(Words::tr("y", "first letter of yes"), Qt::CaseInsensitive);
}

void Calibration::end(bool save)
{
    session.send(save ? CalibrationSteps::saveFrame() : CalibrationSteps::resetFrame(),
                 save ? Words::tr("that the calibration is to be saved")
                      : Words::tr("that the calibration is to be discarded"));
    // It does not tell which calibration it keeps. That it answers is all that can be known.
    askRotation(session);
    session.confirmed();
    if (save)
        LastCalibration{QDateTime::currentDateTimeUtc(), steps.deviation()}.keep();
    session.answer({accuracy(), save ? Words::tr("The touch frame was told to save it.")
                                     : Words::tr("The touch frame was told to discard it.")},
                   {{u"deviation_percent"_s, steps.deviation()},
                    {u"sent"_s, save ? u"save"_s : u"discard"_s}});
}

void addRectangle(CLI::App &command, const char *option, const char *help,
                  const std::function<void(const QRect &)> &take)
{
    command
        .add_option_function<std::string>(
            option,
            [take](const std::string &text) {
                const auto rect = rectangle(text);
                if (!rect)
                    throw CLI::ValidationError(
                        Words::tr("%1 is no rectangle such as 1280x800+1280+0")
                            .arg(QString::fromStdString(text))
                            .toStdString());
                take(*rect);
            },
            help)
        ->type_name("WxH+X+Y");
}

void calibrate(Session &session, Wishes wishes)
{
    if (wishes.area.screen.isEmpty())
        throw Failure(WrongUsage, Words::tr("Say which screen, such as --screen 1920x1080. See "
                                            "quorvelctl calibrate --help."));
    if (!wishes.save && !wishes.discard && !session.around.inputIsTerminal)
        throw Failure(WrongUsage, Words::tr("Nobody can be asked whether to save the calibration: "
                                            "say --save or --discard."));
    if (wishes.area.desktop.isEmpty())
        wishes.area.desktop = QSize(wishes.area.screen.x() + wishes.area.screen.width(),
                                    wishes.area.screen.y() + wishes.area.screen.height());
    Calibration(session, wishes).run();
}

} // namespace

void addCalibrate(CLI::App &app, Session &session)
{
    CLI::App *command = app.add_subcommand(
        "calibrate", "Tell the four targets of a screen one by one, and wait for their touches");
    auto wishes = std::make_shared<Wishes>();
    addRectangle(*command, "--screen", "The screen within the desktop, in native pixels",
                 [wishes](const QRect &rect) { wishes->area.screen = rect; });
    addRectangle(*command, "--desktop", "The whole desktop; as far as the screen, if not given",
                 [wishes](const QRect &rect) { wishes->area.desktop = rect.size(); });
    addSeconds(*command, "--touch-time", "How long each touch may take, 30 if not given",
               [wishes](std::chrono::milliseconds time) { wishes->touchTime = time; });
    CLI::Option *save = command->add_flag("--save", wishes->save, "Save without a question");
    command->add_flag("--discard", wishes->discard, "Discard without a question")->excludes(save);
    define(*command, session, [&session, wishes] { calibrate(session, *wishes); });
}

} // namespace ctl
