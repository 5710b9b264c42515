// SPDX-License-Identifier: GPL-3.0-or-later

#include "metrics.h"

#include "config/lastcalibration.h"
#include "device/plainfile.h"
#include "exposition.h"
#include "lights/judge.h"
#include "lights/words.h"
#include "measure.h"
#include "program.h"
#include "questions.h"
#include "session.h"
#include "usbnodes.h"
#include "words.h"

#include <CLI/CLI.hpp>

#include <QElapsedTimer>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr int Questions = 3;
constexpr int UsualScans = 4;
constexpr int MostScans = 64;
constexpr double MsPerS = 1000;
constexpr double PerCent = 100;

constexpr lights::LightVerdict LightVerdicts[] = {
    lights::LightVerdict::Healthy,   lights::LightVerdict::Weak,
    lights::LightVerdict::Dead,      lights::LightVerdict::Noisy,
    lights::LightVerdict::Saturated, lights::LightVerdict::SwitchedOff};
constexpr lights::StretchVerdict StretchVerdicts[] = {
    lights::StretchVerdict::Dirt, lights::StretchVerdict::Obstacle,
    lights::StretchVerdict::BarOutOfLine, lights::StretchVerdict::BrokenBoard};

struct MetricsWishes
{
    QString output; // empty: the standard output
    int scans = UsualScans;
};

// One word for the frame that does not change while it is away.
QString frameName(const Options &options)
{
    if (!options.port.isEmpty())
        return options.port;
    return options.usb.isEmpty() ? u"usb"_s : options.usb;
}

// It is there all the same.
bool isKeptFromUs(const Failure &failure)
{
    return failure.code() == InUse || failure.code() == NoPermission;
}

class Metrics
{
public:
    Metrics(Session &theSession, const MetricsWishes &theWishes)
        : session(theSession)
        , wishes(theWishes)
        , told({{u"frame"_s, frameName(theSession.options)}})
    {
    }

    QByteArray collect();

private:
    bool findFrame();
    void tellAnswers();
    void tellVersions();
    void tellLights();
    void tellCalibration();
    bool tries(const std::function<void()> &work);

    Session &session;
    const MetricsWishes &wishes;
    Exposition told;
    std::optional<Failure> trouble; // the first
};

// A frame that fails is what there is to tell; only who asked for an end gets it.
bool Metrics::tries(const std::function<void()> &work)
{
    try {
        work();
        return true;
    } catch (const Failure &failure) {
        if (failure.code() >= SignalBase)
            throw;
        if (!trouble)
            trouble = failure;
        return false;
    }
}

QByteArray Metrics::collect()
{
    const bool isLinked = tries([this] { session.connectFrame(); });
    told.gauge(u"quorvel_frame_present"_s, u"Whether a touch frame is there."_s);
    told.sample(isLinked || isKeptFromUs(*trouble) ? 1 : 0);
    if (isLinked) {
        tellAnswers();
        if (!trouble)
            tries([this] { tellVersions(); });
        if (!trouble && wishes.scans > 0)
            tries([this] { tellLights(); });
    }
    told.gauge(u"quorvel_frame_trouble"_s,
               u"1 for what keeps the touch frame from answering; none when nothing does."_s);
    if (trouble) {
        told.sample(1, {{u"trouble"_s, QString::fromLatin1(nameOf(trouble->code()))}});
        session.output.complain(u"quorvelctl: "_s + trouble->why());
    }
    tellCalibration();
    return told.text();
}

void Metrics::tellAnswers()
{
    int answers = 0;
    qint64 longestMs = 0;
    for (int i = 0; i < Questions; ++i) {
        QElapsedTimer time;
        time.start();
        if (!tries([this] { askRotation(session); }))
            break;
        ++answers;
        longestMs = std::max(longestMs, time.elapsed());
    }
    told.gauge(u"quorvel_frame_questions"_s, u"Questions that were to be asked just now."_s);
    told.sample(Questions);
    told.gauge(u"quorvel_frame_answers_in_time"_s, u"Of these, those answered in time."_s);
    told.sample(answers);
    if (answers == 0)
        return;
    told.gauge(u"quorvel_frame_answer_seconds"_s, u"The longest that an answer took."_s);
    told.sample(double(longestMs) / MsPerS);
}

void Metrics::tellVersions()
{
    QList<Exposition::Label> labels{
        {u"link"_s, session.isSerial() ? u"serial"_s : u"usb"_s},
        {u"port"_s, session.frameLink().state().port},
    };
    if (!session.isSerial())
        labels.append({u"release"_s, releaseText(hidver.VersionNumber)});
    if (const auto firmware = firmwareOf(session)) {
        labels.append({u"revision"_s, hex(firmware->revision, 6)});
        labels.append({u"checksum"_s, hex(firmware->checksum, 8)});
    }
    told.gauge(u"quorvel_frame_info"_s, u"How the touch frame is linked, and its firmware."_s);
    told.sample(1, labels);
}

void Metrics::tellLights()
{
    const lights::Thresholds thresholds;
    const lights::Verdicts verdicts =
        lights::judge(measure(session, wishes.scans, thresholds), thresholds);
    told.gauge(u"quorvel_lights"_s, u"Lights by what they are like."_s);
    for (const lights::Axis axis : lights::Axes) {
        const auto &all = verdicts.axis(axis).lights;
        for (const lights::LightVerdict verdict : LightVerdicts)
            told.sample(double(std::count_if(
                            all.begin(), all.end(),
                            [verdict](const auto &light) { return light.verdict == verdict; })),
                        {{u"axis"_s, lights::key(axis)}, {u"verdict"_s, lights::key(verdict)}});
    }
    told.gauge(u"quorvel_light_stretches"_s,
               u"Stretches of lights that have one thing wrong with them."_s);
    const auto &stretches = verdicts.stretches;
    for (const lights::StretchVerdict verdict : StretchVerdicts)
        told.sample(
            double(std::count_if(stretches.begin(), stretches.end(),
                                 [verdict](const auto &one) { return one.verdict == verdict; })),
            {{u"verdict"_s, lights::key(verdict)}});
    told.gauge(u"quorvel_light_weakest_margin_ratio"_s,
               u"By how much the weakest light that is switched on lies above the level that a "
               u"touch needs, as a share of the full level."_s);
    for (const lights::Axis axis : lights::Axes) {
        std::optional<double> weakest;
        for (const lights::Light &light : verdicts.axis(axis).lights) {
            if (light.verdict != lights::LightVerdict::SwitchedOff)
                weakest = std::min(weakest.value_or(light.level), light.level);
        }
        if (weakest)
            told.sample((*weakest - thresholds.touchLevel) / lights::FullLevel,
                        {{u"axis"_s, lights::key(axis)}});
    }
    told.gauge(u"quorvel_lights_pass"_s, u"Whether no light needs service."_s);
    told.sample(verdicts.isPass() ? 1 : 0);
}

void Metrics::tellCalibration()
{
    const auto last = LastCalibration::load();
    if (!last)
        return;
    told.gauge(u"quorvel_calibration_deviation_ratio"_s,
               u"By how much the touches of the last saved calibration were off."_s);
    told.sample(last->deviation / PerCent);
    told.gauge(u"quorvel_calibration_timestamp_seconds"_s, u"When that was saved."_s);
    told.sample(double(last->date.toSecsSinceEpoch()));
}

void metrics(Session &session, const MetricsWishes &wishes)
{
    const QByteArray text = Metrics(session, wishes).collect();
    if (wishes.output.isEmpty())
        session.answer(QString::fromUtf8(text.trimmed()).split(u'\n'),
                       {{u"openmetrics"_s, QString::fromUtf8(text)}});
    // As a whole, since a collector may read it at any time.
    else if (const QString why = plainfile::replace(wishes.output, text); !why.isEmpty())
        throw Failure(NoOutput, Words::tr("%1 cannot be written: %2.").arg(wishes.output, why));
}

} // namespace

void addMetrics(CLI::App &app, Session &session)
{
    CLI::App *command = app.add_subcommand(
        "metrics", "Tell what the frame is like as OpenMetrics text, for monitoring");
    auto wishes = std::make_shared<MetricsWishes>();
    command
        ->add_option_function<std::string>(
            "--output",
            [wishes](const std::string &path) { wishes->output = QFile::decodeName(path.c_str()); },
            "Write it there, as a whole, instead of to the standard output")
        ->type_name("FILE");
    command
        ->add_option("--scans", wishes->scans,
                     "How often to scan the lights, 4 if not given; 0: not at all")
        ->type_name("N")
        ->check(CLI::Range(0, MostScans));
    define(*command, session, [&session, wishes] { metrics(session, *wishes); });
}

} // namespace ctl
