// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightscheck.h"

#include "measure.h"
#include "program.h"
#include "reportfile.h"
#include "session.h"
#include "words.h"

#include "capture/reader.h"
#include "device/version.h"
#include "lights/history.h"
#include "lights/judge.h"
#include "lights/report.h"
#include "lights/scancollector.h"
#include "lights/scanfile.h"
#include "lights/touch.h"
#include "lights/trend.h"
#include "lights/verdictfile.h"
#include "lights/words.h"

#include <CLI/CLI.hpp>

#include <QFile>
#include <QFileInfo>
#include <QTimeZone>
#include <QtEndian>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr int ScansOfCheck = 16;
// A capture file begins with this, in the order of the machine that wrote it, for times in
// microseconds and in nanoseconds.
constexpr std::array<quint32, 2> CaptureMagic{0xA1B2C3D4, 0xA1B23C4D};

struct LightWishes
{
    QString from;       // file; empty: the linked frame
    QString thresholds; // file; empty: the usual ones
    int scans = ScansOfCheck;
    double pitch = 0; // mm; 0: not known
    bool csv = false;
    QString report; // file to write
    bool remembers = false;
    QString name; // to remember it by
    bool compares = false;
    QString baseline; // file; empty: the newest that was remembered
};

// Of files that are not what they should be.
[[noreturn]] void refuse(const QString &why)
{
    throw Failure(WrongUsage, why);
}

bool isRecording(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.read(4);
    if (bytes.size() < 4)
        return false;
    const auto magic = qFromLittleEndian<quint32>(bytes.constData());
    return std::any_of(CaptureMagic.begin(), CaptureMagic.end(),
                       [magic](quint32 known) { return magic == known || magic == qbswap(known); });
}

lights::Measurement ofRecording(const QString &path)
{
    QString problem;
    const auto reader = capture::Reader::open(path, &problem);
    if (!reader)
        refuse(problem);
    lights::ScanCollector collector;
    std::chrono::microseconds time{0};
    while (const auto record = reader->next()) {
        if (record->kind == capture::Kind::ToFrame)
            collector.sent(record->frame);
        else if (record->kind == capture::Kind::FromFrame)
            collector.received(record->frame);
        time = record->time;
    }
    if (!reader->problem().isEmpty() && !reader->isCutShort())
        refuse(reader->problem());
    lights::Measurement measurement = collector.measurement();
    if (measurement.x.lights == 0 && measurement.y.lights == 0)
        refuse(Words::tr("%1: no whole scan was recorded").arg(path));
    measurement.date = QDateTime::fromMSecsSinceEpoch(time.count() / 1000, QTimeZone::utc());
    return measurement;
}

lights::Measurement ofFile(const QString &path)
{
    if (isRecording(path))
        return ofRecording(path);
    QString problem;
    auto measurement = lights::ScanFile::load(path, &problem);
    if (!measurement)
        refuse(problem);
    return std::move(*measurement);
}

QStringList linesOf(const lights::Measurement &measurement, const lights::Verdicts &verdicts)
{
    QStringList lines;
    lines += verdicts.isPass() ? Words::tr("PASS") : Words::tr("SERVICE NEEDED");
    for (const lights::Stretch &stretch : verdicts.stretches) {
        lines +=
            Words::tr("%1 to %2: %3, sure by %4 %. %5")
                .arg(lights::lightName(stretch.axis, stretch.first),
                     lights::lightName(stretch.axis, stretch.last), lights::word(stretch.verdict),
                     QString::number(qRound(100 * stretch.confidence)),
                     advice(stretch, measurement.axis(stretch.axis)));
    }
    for (const lights::Axis axis : lights::Axes) {
        const lights::AxisVerdict &verdict = verdicts.axis(axis);
        for (int i = 0; i < int(verdict.lights.size()); ++i) {
            const lights::Light &light = verdict.lights[size_t(i)];
            if (light.verdict == lights::LightVerdict::Healthy)
                continue;
            lines += Words::tr("%1: %2, level %3 where %4 is usual. %5")
                         .arg(lights::lightName(axis, i), lights::word(light.verdict),
                              QString::number(qRound(light.level)),
                              QString::number(qRound(light.expected)),
                              advice(axis, i, light, measurement.axis(axis)));
        }
    }
    for (const lights::TouchFault &fault : touchFaults(measurement, verdicts))
        lines += wordsFor(fault, measurement.axis(fault.axis));
    return lines;
}

// What has changed, into the report and in words.
QStringList compare(Session &session, const LightWishes &wishes, lights::Report &report)
{
    const lights::Measurement &measurement = report.measurement;
    QStringList problems;
    std::vector<lights::Measurement> kept;
    if (wishes.baseline.isEmpty()) {
        kept = lights::History().recall(measurement.unit, &problems);
        for (const QString &problem : problems)
            session.output.complain(u"quorvelctl: "_s + problem);
        std::erase_if(kept, [&measurement](const lights::Measurement &one) {
            return measurement.date.isValid() && one.date >= measurement.date;
        });
        if (kept.empty())
            refuse(Words::tr("Nothing has been remembered of this unit. Use --remember once it is "
                             "in good order."));
    } else {
        kept.push_back(ofFile(wishes.baseline));
        QString problem;
        if (!lights::History::isOf(kept.back(), measurement.unit, wishes.baseline, &problem))
            refuse(problem);
    }
    report.baseline = kept.back();
    report.changes = changesSince(judge(*report.baseline, report.thresholds), report.verdicts);
    QStringList lines;
    const auto worst = std::min_element(
        report.changes.begin(), report.changes.end(),
        [](const lights::Change &a, const lights::Change &b) { return a.alone < b.alone; });
    if (worst != report.changes.end()) {
        lines += Words::tr("Since %1 light %2 has changed most for the worse, by %3 % beside the "
                           "others.")
                     .arg(report.baseline->date.toLocalTime().date().toString(Qt::ISODate),
                          lights::lightName(worst->axis, worst->light),
                          QString::number(100 * worst->alone, 'f', 1));
    }
    kept.push_back(measurement);
    report.trend = trendOf(kept, report.thresholds);
    if (report.trend)
        lines += wordsFor(*report.trend);
    return lines;
}

void check(Session &session, const LightWishes &wishes)
{
    if (!wishes.report.isEmpty() && !canWriteReport(wishes.report))
        refuse(Words::tr("%1: a report is a file whose name ends with .html or .pdf")
                   .arg(wishes.report));
    QString problem;
    lights::Report report;
    report.version = QStringLiteral("quorvelctl " QUORVEL_VERSION);
    if (!wishes.thresholds.isEmpty()) {
        const auto read = lights::Thresholds::load(wishes.thresholds, &problem);
        if (!read)
            refuse(problem);
        report.thresholds = *read;
    }
    if (wishes.from.isEmpty())
        session.connectFrame();
    lights::Measurement &measurement = report.measurement;
    measurement = wishes.from.isEmpty() ? measure(session, wishes.scans, report.thresholds)
                                        : ofFile(wishes.from);
    if (wishes.pitch > 0) {
        measurement.x.pitch = wishes.pitch;
        measurement.y.pitch = wishes.pitch;
    }
    if (!wishes.name.isEmpty())
        measurement.unit.name = wishes.name;
    report.verdicts = judge(measurement, report.thresholds);
    QStringList lines = linesOf(measurement, report.verdicts);
    if (wishes.compares)
        lines += compare(session, wishes, report);
    if (wishes.remembers && !lights::History().remember(measurement, &problem))
        throw Failure(NoOutput, problem);
    if (!wishes.report.isEmpty())
        writeReport(wishes.report, report);
    const int code = report.verdicts.isPass() ? Done : Failed;
    if (wishes.csv && !session.options.json)
        session.answer({QString::fromLatin1(verdictsToCsv(report.verdicts).trimmed())}, {}, code);
    else
        session.answer(lines, toJson(report), code);
}

} // namespace

void addLightsCheck(CLI::App &lights, Session &session)
{
    auto wishes = std::make_shared<LightWishes>();
    CLI::App *command =
        lights.add_subcommand("check", "Judge every light; the exit code tells pass or service");
    const auto addPath = [command](const char *name, const char *help, QString &into) {
        command
            ->add_option_function<std::string>(
                name, [&into](const std::string &path) { into = QString::fromStdString(path); },
                help)
            ->type_name("FILE");
    };
    addPath("--from", "Judge a file: a recording, what --json has said, or a signal test's log",
            wishes->from);
    addPath("--thresholds", "Judge by the thresholds in this file", wishes->thresholds);
    addPath("--report", "Write a report for a customer, a file whose name ends with .html or .pdf",
            wishes->report);
    command->add_option("--scans", wishes->scans, "How often to scan, 16 if nothing else is said")
        ->type_name("N")
        ->check(CLI::Range(1, lights::MaxScans));
    command->add_option("--pitch", wishes->pitch, "Millimetres from one light to the next")
        ->type_name("MM")
        ->check(CLI::Range(0.1, 1000.0));
    const auto addName = [command, wishes](const char *option, const char *help, bool remembers) {
        command
            ->add_option_function<std::string>(
                option,
                [wishes, remembers](const std::string &name) {
                    wishes->name = QString::fromStdString(name);
                    wishes->remembers = wishes->remembers || remembers;
                },
                help)
            ->type_name("NAME");
    };
    addName("--remember", "Keep this as what is good for this unit, which is called so", true);
    addName("--name", "What a unit is called that says nothing of itself", false);
    command
        ->add_option_function<std::string>(
            "--baseline",
            [wishes](const std::string &path) {
                wishes->compares = true;
                wishes->baseline = path == "last" ? QString() : QString::fromStdString(path);
            },
            "Compare with this file, or with what was remembered last")
        ->type_name("FILE|last");
    command->add_flag("--csv", wishes->csv, "Say it as a table, a line for each light");
    define(*command, session, [&session, wishes] { check(session, *wishes); });
}

} // namespace ctl
