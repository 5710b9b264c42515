#include "sim/framelog.h"

#include <algorithm>
#include <ratio>
#include <utility>

using namespace Qt::StringLiterals;
using namespace command;

namespace sim {

namespace {

constexpr int StampWidth = 10;
constexpr int DegreesPerTurn = 90;
constexpr UCHAR LastQuarterTurn = 3;

QString hex(quint32 value, int digits)
{
    return u"0x"_s + QString::number(value, 16).toUpper().rightJustified(digits, u'0');
}

quint32 le24(const UCHAR *p)
{
    return quint32(p[0] | p[1] << 8 | p[2] << 16);
}

QString lightName(const Frame &frame)
{
    const UCHAR axis = frame[settings::LightAxis];
    const QString name = axis == settings::AxisX   ? u"X"_s
                         : axis == settings::AxisY ? u"Y"_s
                                                   : u"axis %1,"_s.arg(axis);
    return u"%1 %2"_s.arg(name).arg(le16(&frame[settings::LightNumber]));
}

QString adcWords(const Frame &frame)
{
    return u"range %1 to %2, edge range %3 to %4, threshold %5, edge threshold %6"_s
        .arg(le16(&frame[settings::MinAdc]))
        .arg(le16(&frame[settings::MaxAdc]))
        .arg(le16(&frame[settings::MinEdgeAdc]))
        .arg(le16(&frame[settings::MaxEdgeAdc]))
        .arg(le16(&frame[settings::AdcThreshold]))
        .arg(le16(&frame[settings::EdgeAdcThreshold]));
}

QString degrees(UCHAR code)
{
    return code > LastQuarterTurn ? u"code %1"_s.arg(code)
                                  : u"%1 degrees"_s.arg(code * DegreesPerTurn);
}

QString calibrationCommand(const Frame &frame)
{
    const UCHAR sub = frame[offset::Sub];
    switch (sub) {
    case calibration::Begin:
        return u"calibration: begin"_s;
    case calibration::Step1:
    case calibration::Step2:
    case calibration::Step3:
    case calibration::Step4:
        return u"calibration: step %1"_s.arg(sub);
    case calibration::Check:
        return u"calibration: check, screen %1,%2 %3x%4 of %5x%6"_s
            .arg(le16(&frame[calibration::StartX]))
            .arg(le16(&frame[calibration::StartY]))
            .arg(le16(&frame[calibration::Width]))
            .arg(le16(&frame[calibration::Height]))
            .arg(le16(&frame[calibration::DesktopWidth]))
            .arg(le16(&frame[calibration::DesktopHeight]));
    case calibration::Reset:
        return u"calibration: discard"_s;
    case calibration::Save:
        return u"calibration: save"_s;
    default:
        return {};
    }
}

QString calibrationReport(const Frame &frame)
{
    const UCHAR sub = frame[offset::Sub];
    if (sub == calibration::Begin)
        return u"calibration: begun"_s;
    if (sub <= calibration::Step4)
        return u"calibration: ready for step %1"_s.arg(sub);
    if (sub == calibration::Check)
        return u"calibration: ready to check"_s;
    if (sub == calibration::End) {
        return u"calibration: finished, off by %1 % and %2 %"_s
            .arg(qint8(frame[calibration::DeviationX]))
            .arg(qint8(frame[calibration::DeviationY]));
    }
    return {};
}

QString settingsCommand(const Frame &frame)
{
    switch (frame[offset::Sub]) {
    case settings::SetGestures:
        return u"gestures: all %1, right button %2 after %3 ms within %4, wheel %5 at %6"_s
            .arg(frame[settings::AllEnabled])
            .arg(frame[settings::RightButtonEnabled])
            .arg(le16(&frame[settings::RightButtonDuration]))
            .arg(frame[settings::RightButtonRange])
            .arg(frame[settings::WheelEnabled])
            .arg(frame[settings::WheelSensitivity]);
    case settings::Reset:
        return u"reset"_s;
    case settings::SetAdc:
        return u"adc: set "_s + adcWords(frame);
    case settings::GetAdc:
        return u"adc: read settings"_s;
    case settings::SetLight:
        return u"light %1: set offset %2"_s.arg(lightName(frame))
            .arg(qint8(frame[settings::LightOffset]));
    case settings::GetLight:
        return u"light %1: read"_s.arg(lightName(frame));
    case settings::SwitchLight:
        return u"light %1: switch %2"_s.arg(lightName(frame),
                                            frame[settings::LightSwitch] ? u"off"_s : u"on"_s);
    default:
        return {};
    }
}

QString settingsReport(const Frame &frame)
{
    if (frame[offset::Sub] == replyTo(settings::GetAdc)) {
        return u"adc: %1; %2 X lights, %3 Y lights"_s.arg(adcWords(frame))
            .arg(le16(&frame[settings::AdcLightsX]))
            .arg(le16(&frame[settings::AdcLightsY]));
    }
    if (frame[offset::Sub] == replyTo(settings::GetLight)) {
        return u"light %1: %2, offset %3, agc %4, adc %5, org %6"_s
            .arg(lightName(frame), frame[settings::LightOff] ? u"off"_s : u"on"_s)
            .arg(qint8(frame[settings::LightOffset]))
            .arg(frame[settings::LightAgc])
            .arg(le16(&frame[settings::LightAdc]))
            .arg(le16(&frame[settings::LightOrg]));
    }
    return {};
}

QString scanReport(const Frame &frame)
{
    const UCHAR sub = frame[offset::Sub];
    if (sub == replyTo(scan::Counts)) {
        return u"scan: %1 X lights, %2 Y lights"_s.arg(le16(&frame[scan::CountX]))
            .arg(le16(&frame[scan::CountY]));
    }
    if (sub == replyTo(scan::AxisX) || sub == replyTo(scan::AxisY)) {
        const int bytes = frame[offset::Length] + offset::Payload - scan::Levels;
        return u"scan: %1 page from light %2, level bytes: %3"_s
            .arg(sub == replyTo(scan::AxisX) ? u"X"_s : u"Y"_s)
            .arg(le16(&frame[scan::FirstLight]))
            .arg(std::max(bytes, 0));
    }
    return {};
}

QString firmwareReport(const Frame &frame)
{
    const quint32 shared = frame[firmware::ProductDate];
    const quint32 number = le16(&frame[firmware::ProductNum]) | (shared & 0x0F) << 16;
    const quint32 date = shared >> 4 | quint32(frame[firmware::ProductDate + 1]) << 4 |
                         quint32(frame[firmware::ProductDate + 2] & 0x0F) << 12;
    const quint32 checksum =
        le24(&frame[firmware::Checksum]) | quint32(frame[firmware::Checksum + 3]) << 24;
    return u"firmware: revision %1, checksum %2, date %3, number %4, family %5"_s.arg(
        hex(le24(&frame[firmware::Revision]), 6), hex(checksum, 8), hex(date, 4), hex(number, 5),
        hex(frame[firmware::ProductFamily], 2));
}

bool is(const Frame &frame, UCHAR cls, UCHAR sub)
{
    return frame[offset::Class] == cls && frame[offset::Sub] == sub;
}

QString commandWords(const Frame &frame)
{
    switch (frame[offset::Class]) {
    case command::Calibration:
        return calibrationCommand(frame);
    case Settings:
        return settingsCommand(frame);
    default:
        break;
    }
    if (is(frame, OldReset, oldreset::Reset))
        return u"reset (older devices)"_s;
    if (is(frame, command::Firmware, firmware::Query))
        return u"firmware: read"_s;
    if (is(frame, Scan, scan::Counts))
        return u"scan: read light counts"_s;
    if (is(frame, Scan, scan::AxisX))
        return u"scan: read X"_s;
    if (is(frame, Scan, scan::AxisY))
        return u"scan: read Y"_s;
    if (is(frame, Rotation, rotation::Set))
        return u"rotation: set "_s + degrees(frame[rotation::Code]);
    if (is(frame, Rotation, rotation::Query))
        return u"rotation: read"_s;
    if (is(frame, SerialBaud, serialbaud::Set))
        return u"serial rate: set code %1"_s.arg(le24(&frame[serialbaud::Code]));
    return {};
}

QString reportWords(const Frame &frame)
{
    if (std::all_of(frame.begin() + 1, frame.end(), [](UCHAR byte) { return byte == 0; }))
        return u"nothing yet"_s;
    switch (frame[offset::Class]) {
    case command::Calibration:
        return calibrationReport(frame);
    case Settings:
        return settingsReport(frame);
    case Scan:
        return scanReport(frame);
    default:
        break;
    }
    if (is(frame, command::Firmware, replyTo(firmware::Query)))
        return firmwareReport(frame);
    if (is(frame, Rotation, rotation::DefaultReply))
        return u"rotation: default is "_s + degrees(frame[rotation::Code]);
    if (is(frame, Rotation, rotation::CurrentReply))
        return u"rotation: now "_s + degrees(frame[rotation::Code]);
    return {};
}

QString orUnknown(const QString &words, const Frame &frame)
{
    return words.isEmpty() ? u"unknown: class %1, sub-command %2"_s.arg(
                                 hex(frame[offset::Class], 2), hex(frame[offset::Sub], 2))
                           : words;
}

QString faultWords(const Fault &fault)
{
    const QString ms = QString::number(fault.duration.count());
    switch (fault.kind) {
    case Fault::Kind::None:
        break;
    case Fault::Kind::Stall:
        return u"stalls for %1 ms"_s.arg(ms);
    case Fault::Kind::Late:
        return u"is %1 ms late"_s.arg(ms);
    case Fault::Kind::Torn:
        return u"is torn"_s;
    case Fault::Kind::Repeat:
        return u"happens twice"_s;
    case Fault::Kind::Silent:
        return u"meets silence"_s;
    case Fault::Kind::Unplug:
        return fault.back ? u"ends in an unplug for %1 ms"_s.arg(fault.back->count())
                          : u"ends in an unplug"_s;
    case Fault::Kind::Noise:
        return u"meets %1 bytes of noise"_s.arg(fault.bytes);
    case Fault::Kind::Lose:
        return u"loses its last %1 bytes"_s.arg(fault.bytes);
    }
    return {};
}

} // namespace

QString describeCommand(const Frame &frame)
{
    return orUnknown(commandWords(frame), frame);
}

QString describeReport(const Frame &frame)
{
    return orUnknown(reportWords(frame), frame);
}

QString usedBytes(const Frame &frame)
{
    const auto lastUsed =
        std::find_if(frame.rbegin(), frame.rend() - 1, [](UCHAR byte) { return byte != 0; });
    int end = std::max(int(frame.rend() - lastUsed), offset::Length);
    // Calibration frames carry data where the others tell their length.
    if (frame[offset::Class] != command::Calibration)
        end = std::max(end, std::min(offset::Payload + frame[offset::Length], FrameSize));
    QStringList bytes;
    for (int i = 1; i < end; ++i)
        bytes += hex(frame[size_t(i)], 2).mid(2);
    return bytes.join(u' ');
}

FrameLog::FrameLog(Clock theClock)
    : clock(std::move(theClock))
{
}

QStringList FrameLog::command(const Frame &frame)
{
    return {stamped(u"host > frame  %1  [%2]"_s.arg(describeCommand(frame), usedBytes(frame)))};
}

QStringList FrameLog::report(const Frame &frame, bool fresh)
{
    if (any && !fresh && frame == last) {
        ++repeats;
        return {};
    }
    QStringList lines;
    if (repeats > 0)
        lines += stamped(u"frame > host  the same again, %1 x"_s.arg(repeats));
    repeats = 0;
    any = true;
    last = frame;
    lines += stamped(u"frame > host  %1  [%2]"_s.arg(describeReport(frame), usedBytes(frame)));
    return lines;
}

QStringList FrameLog::fault(const Fault &fault, quint64 transfer)
{
    if (fault.kind == Fault::Kind::None)
        return {};
    return note(u"fault  transfer %1 %2"_s.arg(transfer).arg(faultWords(fault)));
}

QStringList FrameLog::note(const QString &words)
{
    return {stamped(words)};
}

QString FrameLog::stamped(const QString &words) const
{
    const qint64 ms = clock().count();
    const QString stamp =
        u"%1.%2"_s.arg(ms / std::milli::den).arg(ms % std::milli::den, 3, 10, QLatin1Char('0'));
    return stamp.rightJustified(StampWidth) + u"  "_s + words;
}

} // namespace sim
