// SPDX-License-Identifier: GPL-3.0-or-later

#include "framewords.h"

#include "records.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace command;

namespace framewords {

namespace {

constexpr int DegreesPerTurn = 90;
constexpr UCHAR LastQuarterTurn = 3;

QString hex(quint32 value, int digits)
{
    return u"0x"_s + QString::number(value, 16).toUpper().rightJustified(digits, u'0');
}

QString nameOf(const LightName &light)
{
    const QString axis = light.axis == settings::AxisX   ? u"X"_s
                         : light.axis == settings::AxisY ? u"Y"_s
                                                         : u"axis %1,"_s.arg(light.axis);
    return u"%1 %2"_s.arg(axis).arg(light.number);
}

QString degrees(UCHAR code)
{
    return code > LastQuarterTurn ? u"code %1"_s.arg(code)
                                  : u"%1 degrees"_s.arg(code * DegreesPerTurn);
}

// One for each record.

QString words(const Gestures &set)
{
    return u"gestures: all %1, right button %2 after %3 ms within %4, wheel %5 at %6"_s
        .arg(set.allEnabled)
        .arg(set.rightButtonEnabled)
        .arg(set.rightButtonDuration)
        .arg(set.rightButtonRange)
        .arg(set.wheelEnabled)
        .arg(set.wheelSensitivity);
}

QString values(const AdcLines &lines)
{
    return u"range %1 to %2, edge range %3 to %4, threshold %5, edge threshold %6"_s.arg(lines.min)
        .arg(lines.max)
        .arg(lines.minEdge)
        .arg(lines.maxEdge)
        .arg(lines.threshold)
        .arg(lines.edgeThreshold);
}

QString words(const AdcLines &lines)
{
    return u"adc: set "_s + values(lines);
}

QString values(const LightCounts &counts)
{
    return u"%1 X lights, %2 Y lights"_s.arg(counts.x).arg(counts.y);
}

QString words(const LightCounts &counts)
{
    return u"scan: "_s + values(counts);
}

QString words(const AdcReport &report)
{
    return u"adc: %1; %2"_s.arg(values(report.lines), values(report.counts));
}

QString words(const LightRequest &request)
{
    const QString name = nameOf(request.light);
    if (request.sub == settings::SetLight)
        return u"light %1: set offset %2"_s.arg(name).arg(request.offset);
    if (request.sub == settings::SwitchLight)
        return u"light %1: switch %2"_s.arg(name, request.off ? u"off"_s : u"on"_s);
    return u"light %1: read"_s.arg(name);
}

QString words(const LightReport &report)
{
    return u"light %1: %2, offset %3, agc %4, adc %5, org %6"_s
        .arg(nameOf(report.light), report.off ? u"off"_s : u"on"_s)
        .arg(report.offset)
        .arg(report.agc)
        .arg(report.adc)
        .arg(report.org);
}

QString words(const ScanPage &page)
{
    return u"scan: %1 page from light %2, level bytes: %3"_s
        .arg(page.axis == scan::AxisX ? u"X"_s : u"Y"_s)
        .arg(page.first)
        .arg(page.size);
}

QString words(const RotationCommand &command)
{
    return u"rotation: set "_s + degrees(command.code);
}

QString words(const RotationReport &report)
{
    return (report.sub == rotation::DefaultReply ? u"rotation: default is "_s
                                                 : u"rotation: now "_s) +
           degrees(report.code);
}

QString words(const FirmwareRecord &record)
{
    return u"firmware: revision %1, checksum %2, date %3, number %4, family %5"_s.arg(
        hex(record.revision, 6), hex(record.checksum, 8), hex(record.date, 4),
        hex(record.number, 5), hex(record.family, 2));
}

QString words(const CalibrationCheck &check)
{
    return u"calibration: check, screen %1,%2 %3x%4 of %5x%6"_s.arg(check.x)
        .arg(check.y)
        .arg(check.width)
        .arg(check.height)
        .arg(check.desktopWidth)
        .arg(check.desktopHeight);
}

QString words(const CalibrationEnd &end)
{
    return u"calibration: finished, off by %1 % and %2 %"_s.arg(end.deviationX).arg(end.deviationY);
}

QString words(const BaudCommand &command)
{
    return u"serial rate: set code %1"_s.arg(command.code);
}

// The words of the first record that the frame is; empty for none.
template <typename... Records>
QString wordsOfAny(const Frame &frame)
{
    QString found;
    const auto tell = [&found](const auto &record) {
        if (record)
            found = words(*record);
        return record.has_value();
    };
    (tell(Records::decode(frame)) || ...);
    return found;
}

// Frames without a record, which carry nothing but their kind.
struct Bare
{
    UCHAR commandClass;
    UCHAR sub;
    const char *words;
};

constexpr Bare BareCommands[] = {
    {Calibration, calibration::Begin, "calibration: begin"},
    {Calibration, calibration::Step1, "calibration: step 1"},
    {Calibration, calibration::Step2, "calibration: step 2"},
    {Calibration, calibration::Step3, "calibration: step 3"},
    {Calibration, calibration::Step4, "calibration: step 4"},
    {Calibration, calibration::Reset, "calibration: discard"},
    {Calibration, calibration::Save, "calibration: save"},
    {Settings, settings::Reset, "reset"},
    {Settings, settings::GetAdc, "adc: read settings"},
    {OldReset, oldreset::Reset, "reset (older devices)"},
    {Firmware, firmware::Query, "firmware: read"},
    {Scan, scan::Counts, "scan: read light counts"},
    {Scan, scan::AxisX, "scan: read X"},
    {Scan, scan::AxisY, "scan: read Y"},
    {Rotation, rotation::Query, "rotation: read"},
};

constexpr Bare BareReports[] = {
    {Calibration, calibration::Begin, "calibration: begun"},
    {Calibration, calibration::Step1, "calibration: ready for step 1"},
    {Calibration, calibration::Step2, "calibration: ready for step 2"},
    {Calibration, calibration::Step3, "calibration: ready for step 3"},
    {Calibration, calibration::Step4, "calibration: ready for step 4"},
    {Calibration, calibration::Check, "calibration: ready to check"},
};

template <size_t Count>
QString bareWords(const Frame &frame, const Bare (&known)[Count])
{
    const auto *const found =
        std::find_if(std::begin(known), std::end(known),
                     [&](const Bare &one) { return is(frame, one.commandClass, one.sub); });
    return found == std::end(known) ? QString() : QString::fromLatin1(found->words);
}

QString orUnknown(const QString &words, const Frame &frame)
{
    return words.isEmpty() ? u"unknown: class %1, sub-command %2"_s.arg(
                                 hex(frame[offset::Class], 2), hex(frame[offset::Sub], 2))
                           : words;
}

} // namespace

QString describeCommand(const Frame &frame)
{
    const QString words = wordsOfAny<Gestures, AdcLines, LightRequest, RotationCommand,
                                     CalibrationCheck, BaudCommand>(frame);
    return orUnknown(words.isEmpty() ? bareWords(frame, BareCommands) : words, frame);
}

QString describeReport(const Frame &frame)
{
    // As a device reads before its first report.
    if (std::all_of(frame.begin() + 1, frame.end(), [](UCHAR byte) { return byte == 0; }))
        return u"nothing yet"_s;
    const QString words = wordsOfAny<AdcReport, LightReport, LightCounts, ScanPage, RotationReport,
                                     FirmwareRecord, CalibrationEnd>(frame);
    return orUnknown(words.isEmpty() ? bareWords(frame, BareReports) : words, frame);
}

QString usedBytes(const Frame &frame)
{
    const auto lastUsed =
        std::find_if(frame.rbegin(), frame.rend() - 1, [](UCHAR byte) { return byte != 0; });
    int end = std::max(int(frame.rend() - lastUsed), offset::Length);
    // Calibration frames carry data where the others tell their length.
    if (frame[offset::Class] != Calibration)
        end = std::max(end, std::min(offset::Payload + frame[offset::Length], FrameSize));
    QStringList bytes;
    for (int i = 1; i < end; ++i)
        bytes += hex(frame[size_t(i)], 2).mid(2);
    return bytes.join(u' ');
}

} // namespace framewords
