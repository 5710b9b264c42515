// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

using namespace command;

namespace sim {

namespace {

// The converter has twelve bits; a one-byte scan level is its upper eight.
constexpr int AdcPerLevel = 16;
constexpr int MaxAdcReading = 0xFFF;
constexpr int MaxAgc = 0xFF;
// Gain of a light in the middle of an axis; the ends need more.
constexpr int MiddleAgc = 48;
constexpr int MaxDeviation = 127;
constexpr int MaxQuarterTurn = 3;
// What a light that does not shine still lets through, at most.
constexpr int DarkReading = 2 * AdcPerLevel;

// The record of a command that says the length that such a command has.
template <typename Record>
std::optional<Record> wellFormed(const Frame &request)
{
    const std::optional<Record> record = Record::decode(request);
    return record && record->encode()[offset::Length] == request[offset::Length] ? record
                                                                                 : std::nullopt;
}

int percent(double part, int whole)
{
    return whole <= 0 ? MaxDeviation
                      : std::min(int(std::lround(part * 100.0 / whole)), MaxDeviation);
}

// Where the host shows its targets: integer division comes first there.
std::array<QPoint, calibration::Targets> targetsOf(const CalibrationCheck &screen)
{
    const int left = screen.x + screen.width / 8;
    const int right = screen.x + screen.width / 8 * 7;
    const int top = screen.y + screen.height / 8;
    const int bottom = screen.y + screen.height / 8 * 7;
    return {QPoint(left, top), QPoint(right, top), QPoint(right, bottom), QPoint(left, bottom)};
}

// The screen whose targets the touches are, as far as they agree.
CalibrationCheck screenOf(const std::array<QPoint, calibration::Targets> &touches)
{
    const auto &[topLeft, topRight, bottomRight, bottomLeft] = touches;
    const int left = (topLeft.x() + bottomLeft.x()) / 2;
    const int right = (topRight.x() + bottomRight.x()) / 2;
    const int top = (topLeft.y() + topRight.y()) / 2;
    const int bottom = (bottomLeft.y() + bottomRight.y()) / 2;
    CalibrationCheck screen;
    screen.width = (right - left) * 8 / 6;
    screen.height = (bottom - top) * 8 / 6;
    screen.x = left - screen.width / 8;
    screen.y = top - screen.height / 8;
    return screen;
}

} // namespace

template <typename Record>
bool Firmware::keep(const Frame &request)
{
    if (!wellFormed<Record>(request))
        return false;
    std::erase_if(keptCommands,
                  [](const Frame &older) { return Record::decode(older).has_value(); });
    keptCommands.push_back(request);
    return true;
}

template <typename Record>
std::optional<Record> Firmware::kept() const
{
    for (const Frame &command : keptCommands) {
        if (const std::optional<Record> record = Record::decode(command))
            return record;
    }
    return {};
}

Firmware::Firmware(Profile profile, Clock theClock)
    : features(std::move(profile))
    , clock(std::move(theClock))
    , startedAt(clock())
    , generator(features.seed)
    , lightsX(size_t(features.lightsX))
    , lightsY(size_t(features.lightsY))
{
    restart();
}

void Firmware::restart()
{
    startedAt = clock();
    replies.clear();
    scansToCome.clear();
    last = command::report(0, 0);
    state = Calibration::Idle;
    step = 0;
    std::erase_if(keptCommands,
                  [](const Frame &command) { return Gestures::decode(command).has_value(); });
    pairs = false;
}

void Firmware::command(const Frame &request, int arrived)
{
    if (!execute(request, arrived))
        ++unknown;
}

Frame Firmware::report()
{
    if (!replies.empty()) {
        last = replies.front();
        replies.pop_front();
        beginScanToCome();
    }
    return last;
}

void Firmware::touch(QPoint pixel)
{
    if (state != Calibration::Waiting)
        return;
    touches[size_t(step - 1)] = pixel;
    ++step;
    state = Calibration::Offered;
    sayCalibration(UCHAR(step));
}

LightState Firmware::light(UCHAR axis, int number) const
{
    return axis == settings::AxisX ? lightsX.at(size_t(number)) : lightsY.at(size_t(number));
}

std::optional<Gestures> Firmware::gestures() const
{
    return kept<Gestures>();
}

AdcLines Firmware::adcSettings() const
{
    return kept<AdcLines>().value_or(FirstAdcLines);
}

int Firmware::rotation() const
{
    return kept<RotationCommand>().value_or(RotationCommand{features.rotation}).code;
}

std::optional<int> Firmware::baudCode() const
{
    const auto rate = kept<BaudCommand>();
    return rate ? std::optional(rate->code) : std::nullopt;
}

// False: the command is unknown or makes no sense.
bool Firmware::execute(const Frame &request, int arrived)
{
    const UCHAR cls = request[offset::Class];
    const UCHAR sub = request[offset::Sub];
    if (cls == command::Calibration)
        return calibrate(request, arrived);
    if (const auto light = wellFormed<LightRequest>(request)) {
        // The record takes any other number for 1.
        if (sub == settings::SwitchLight && request[settings::LightSwitch] > 1)
            return false;
        return obeyLight(*light);
    }
    if (const auto turn = RotationCommand::decode(request); turn && turn->code > MaxQuarterTurn)
        return false;
    if (keep<Gestures>(request) || keep<AdcLines>(request) || keep<RotationCommand>(request) ||
        keep<BaudCommand>(request))
        return true;

    // The others carry nothing.
    if (request[offset::Length] != 0)
        return false;
    const bool current = isCurrentGeneration(features.release);
    if (cls == command::Firmware && sub == firmware::Query && current)
        sayFirmware();
    else if ((cls == Settings && sub == settings::Reset && current) ||
             (cls == OldReset && sub == oldreset::Reset))
        restart();
    else if (cls == Settings && sub == settings::GetAdc)
        sayAdc();
    else if (cls == Scan && sub == scan::Counts)
        sayCounts();
    else if (cls == Scan && (sub == scan::AxisX || sub == scan::AxisY))
        askForScan(sub);
    else if (cls == Rotation && sub == rotation::Query) {
        answer({RotationReport{rotation::DefaultReply, features.defaultRotation}.encode()});
        answer({RotationReport{rotation::CurrentReply, UCHAR(rotation())}.encode()});
    } else
        return false;
    return true;
}

bool Firmware::calibrate(const Frame &request, int arrived)
{
    const UCHAR sub = request[offset::Sub];
    switch (sub) {
    case calibration::Begin:
        dropReplies(command::Calibration);
        touches = {};
        step = calibration::Step1;
        state = Calibration::Offered;
        sayCalibration(calibration::Begin);
        sayCalibration(calibration::Step1);
        return true;
    case calibration::Step1:
    case calibration::Step2:
    case calibration::Step3:
    case calibration::Step4:
        if (state == Calibration::Offered && step == sub)
            state = Calibration::Waiting;
        return true;
    case calibration::Check:
        return check(request, arrived);
    case calibration::Save:
        if (state == Calibration::Ended)
            saved = measured;
        break;
    case calibration::Reset:
        break;
    default:
        return false;
    }
    // Saved or discarded: either way this calibration is over.
    dropReplies(command::Calibration);
    state = Calibration::Idle;
    step = 0;
    return true;
}

bool Firmware::check(const Frame &request, int arrived)
{
    // The values are two bytes each, and half of one is none.
    Frame whole = request;
    const int end = calibration::StartX + (arrived - calibration::StartX) / 2 * 2;
    std::fill(whole.begin() + std::clamp(end, 0, FrameSize), whole.end(), UCHAR(0));
    const CalibrationCheck screen = CalibrationCheck::decode(whole).value();
    const bool isWhole = arrived >= calibration::Height + 2;
    if (isWhole && (screen.width == 0 || screen.height == 0))
        return false;
    if (state != Calibration::Offered || step != calibration::Check)
        return true;

    const CalibrationCheck shown = isWhole ? screen : screenOf(touches);
    const auto targets = targetsOf(shown);
    double offX = 0;
    double offY = 0;
    for (size_t i = 0; i < targets.size(); ++i) {
        offX += std::abs(double(touches[i].x()) - targets[i].x());
        offY += std::abs(double(touches[i].y()) - targets[i].y());
    }
    measured = {screen, percent(offX / calibration::Targets, shown.width),
                percent(offY / calibration::Targets, shown.height)};
    state = Calibration::Ended;
    answer({CalibrationEnd{measured.deviationX, measured.deviationY}.encode()});
    return true;
}

// The three commands that name a light, each answered by how the light is then.
bool Firmware::obeyLight(const LightRequest &request)
{
    const auto [axis, number] = request.light;
    if ((axis != settings::AxisX && axis != settings::AxisY) || number >= lights(axis))
        return false;
    LightState &light = (axis == settings::AxisX ? lightsX : lightsY)[size_t(number)];
    if (request.sub == settings::SetLight)
        light.offset = request.offset;
    else if (request.sub == settings::SwitchLight)
        light.off = request.off;
    sayLight(request.light);
    return true;
}

void Firmware::sayFirmware()
{
    answer({FirmwareRecord{.revision = features.revision,
                           .checksum = features.checksum,
                           .number = features.number,
                           .date = features.date,
                           .family = features.family}
                .encode()});
}

void Firmware::sayAdc()
{
    pairs = true;
    answer({AdcReport{adcSettings(), {features.lightsX, features.lightsY}}.encode()});
}

void Firmware::sayLight(const LightName &name)
{
    const Reading reading = measure(name.axis, name.number);
    const LightState own = light(name.axis, name.number);
    answer({LightReport{.light = name,
                        .offset = own.offset,
                        .agc = reading.agc,
                        .adc = reading.adc,
                        .org = reading.org,
                        .off = own.off}
                .encode()});
}

void Firmware::sayCounts()
{
    pairs = false;
    answer({LightCounts{features.lightsX, features.lightsY}.encode()});
}

void Firmware::askForScan(UCHAR axis)
{
    if (features.earlyRequest == EarlyRequest::Drops || !isWaiting(Scan, replyTo(axis)))
        sayScan(axis);
    else if (std::find(scansToCome.begin(), scansToCome.end(), axis) == scansToCome.end())
        scansToCome.push_back(axis);
}

// The lights are read when the last page before has been: not when they were asked for.
void Firmware::beginScanToCome()
{
    const auto next = std::find_if(scansToCome.begin(), scansToCome.end(),
                                   [this](UCHAR axis) { return !isWaiting(Scan, replyTo(axis)); });
    if (next == scansToCome.end())
        return;
    const UCHAR axis = *next;
    scansToCome.erase(next);
    sayScan(axis);
}

void Firmware::sayScan(UCHAR axis)
{
    const int perPage = pairs ? scan::PairsPerPage : scan::LevelsPerPage;
    const UCHAR lightAxis = axis == scan::AxisX ? settings::AxisX : settings::AxisY;
    const int count = lights(lightAxis);
    std::vector<Frame> pages;
    for (int first = 0; first < count; first += perPage) {
        ScanPage page{.axis = axis, .first = first};
        for (int number = first; number < std::min(first + perPage, count); ++number) {
            const Reading reading = measure(lightAxis, number);
            page.bytes[size_t(page.size++)] = UCHAR(reading.adc / AdcPerLevel);
            if (pairs)
                page.bytes[size_t(page.size++)] = UCHAR(reading.agc);
        }
        pages.push_back(page.encode());
    }
    answer(pages);
}

void Firmware::sayCalibration(UCHAR sub)
{
    answer({command::report(command::Calibration, sub)});
}

// A host that asks again wants the answer of now, and one that asks faster than it reads would
// otherwise fill the queue: what still waits of the same kind is dropped.
void Firmware::answer(const std::vector<Frame> &pages)
{
    const Frame &first = pages.front();
    std::erase_if(replies, [&first](const Frame &waiting) {
        return is(waiting, first[offset::Class], first[offset::Sub]);
    });
    replies.insert(replies.end(), pages.begin(), pages.end());
}

bool Firmware::isWaiting(UCHAR cls, UCHAR sub) const
{
    return std::any_of(replies.begin(), replies.end(),
                       [cls, sub](const Frame &waiting) { return is(waiting, cls, sub); });
}

void Firmware::dropReplies(UCHAR cls)
{
    std::erase_if(replies, [cls](const Frame &waiting) { return waiting[offset::Class] == cls; });
}

int Firmware::lights(UCHAR axis) const
{
    return axis == settings::AxisX ? features.lightsX : features.lightsY;
}

int Firmware::droop(UCHAR axis, int number) const
{
    const int count = lights(axis);
    // -1 at one end of the axis, 1 at the other.
    const double place = count > 1 ? 2.0 * number / (count - 1) - 1.0 : 0.0;
    return int(std::lround(features.curve * place * place));
}

const OddLight &Firmware::oddity(UCHAR axis, int number) const
{
    const auto found = std::find_if(features.oddLights.begin(), features.oddLights.end(),
                                    [axis, number](const OddLight &light) {
                                        return light.axis == axis && light.number == number;
                                    });
    static const OddLight usual;
    return found == features.oddLights.end() ? usual : *found;
}

// What a light that shines reads, but for its offset and its noise.
int Firmware::steadyReading(UCHAR axis, int number) const
{
    const int usual = std::max(features.level - droop(axis, number), 0);
    return oddity(axis, number).level.value_or(usual) * AdcPerLevel;
}

Firmware::Reading Firmware::measure(UCHAR axis, int number)
{
    const int agc = std::min(MiddleAgc + droop(axis, number), MaxAgc);
    const OddLight &odd = oddity(axis, number);
    // Drawn for every light, so that one switch does not shift the noise of all others. The
    // distributions of the standard library give other numbers elsewhere.
    const int most = odd.noise.value_or(features.noise) * AdcPerLevel;
    const int noise = int(generator() % unsigned(2 * most + 1)) - most;

    const LightState own = light(axis, number);
    if (own.off)
        return {0, agc, 0};
    if (odd.level == 0) {
        const int dark = std::min(std::abs(noise), DarkReading);
        return {dark, agc, dark};
    }
    const int org = std::clamp(steadyReading(axis, number) + noise, 0, MaxAdcReading);
    // One step of gain is worth one level.
    return {std::clamp(org + own.offset * AdcPerLevel, 0, MaxAdcReading), agc, org};
}

std::optional<QPointF> Firmware::feel(QPointF place, QSizeF width) const
{
    const auto x = feelAlong(settings::AxisX, place.x(), width.width());
    const auto y = feelAlong(settings::AxisY, place.y(), width.height());
    return x && y ? std::optional(QPointF(*x, *y)) : std::nullopt;
}

// Each light looks along a strip of the screen, and the strips of an axis fill it.
std::optional<double> Firmware::feelAlong(UCHAR axis, double place, double width) const
{
    const int count = lights(axis);
    const AdcLines lines = adcSettings();
    const double begin = place * count - width / 2;
    const double end = begin + width;
    double missing = 0;
    double moment = 0;
    for (int number = 0; number < count; ++number) {
        const double covered = std::min(end, number + 1.0) - std::max(begin, double(number));
        const LightState own = light(axis, number);
        if (covered <= 0 || own.off || oddity(axis, number).level == 0)
            continue;
        const int reading =
            std::clamp(steadyReading(axis, number) + own.offset * AdcPerLevel, 0, MaxAdcReading);
        const bool isEdge = number == 0 || number == count - 1;
        const double shadow = reading * covered;
        if (shadow < (isEdge ? lines.edgeThreshold : lines.threshold))
            continue;
        missing += shadow;
        moment += shadow * (number + 0.5);
    }
    if (missing <= 0)
        return {};
    return moment / missing / count;
}

} // namespace sim
