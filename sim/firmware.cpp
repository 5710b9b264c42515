#include "sim/firmware.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <utility>

using namespace command;

namespace sim {

namespace {

// The converter has twelve bits; a one-byte scan level is its upper eight.
constexpr int AdcPerLevel = 16;
constexpr int MaxAdcReading = 0xFFF;
constexpr int MaxLevel = 0xFF;
constexpr int MaxAgc = 0xFF;
// Gain of a light in the middle of an axis; the ends need more.
constexpr int MiddleAgc = 48;
constexpr int MaxDeviation = 127;
constexpr int MaxQuarterTurn = 3;
// What a light that does not shine still lets through, at most.
constexpr int DarkReading = 2 * AdcPerLevel;

// Lengths of replies: the payload up to its last value.
constexpr UCHAR lengthUpTo(int end)
{
    return UCHAR(end - offset::Payload);
}
constexpr UCHAR FirmwareLength = lengthUpTo(firmware::ProductFamily + 1);
constexpr UCHAR AdcReplyLength = lengthUpTo(settings::AdcLightsY + 2);
constexpr UCHAR LightLength = lengthUpTo(settings::LightOff + 1);
constexpr UCHAR CountsLength = lengthUpTo(scan::CountY + 2);
constexpr UCHAR RotationLength = lengthUpTo(rotation::Code + 1);

Frame reply(UCHAR cls, UCHAR sub, UCHAR length = 0)
{
    Frame frame{};
    frame[offset::ReportId] = ReportId;
    frame[offset::Class] = cls;
    frame[offset::Sub] = sub;
    frame[offset::Length] = length;
    return frame;
}

bool sameKind(const Frame &a, const Frame &b)
{
    return a[offset::Class] == b[offset::Class] && a[offset::Sub] == b[offset::Sub];
}

int signedByte(UCHAR byte)
{
    return byte <= SCHAR_MAX ? byte : byte - (UCHAR_MAX + 1);
}

int percent(double part, int whole)
{
    return whole <= 0 ? MaxDeviation
                      : std::min(int(std::lround(part * 100.0 / whole)), MaxDeviation);
}

// Where the host shows its targets: integer division comes first there.
std::array<QPoint, calibration::Targets> targetsOf(const ScreenGeometry &screen)
{
    const int left = screen.x + screen.width / 8;
    const int right = screen.x + screen.width / 8 * 7;
    const int top = screen.y + screen.height / 8;
    const int bottom = screen.y + screen.height / 8 * 7;
    return {QPoint(left, top), QPoint(right, top), QPoint(right, bottom), QPoint(left, bottom)};
}

// The screen whose targets the touches are, as far as they agree.
ScreenGeometry screenOf(const std::array<QPoint, calibration::Targets> &touches)
{
    const auto &[topLeft, topRight, bottomRight, bottomLeft] = touches;
    const int left = (topLeft.x() + bottomLeft.x()) / 2;
    const int right = (topRight.x() + bottomRight.x()) / 2;
    const int top = (topLeft.y() + topRight.y()) / 2;
    const int bottom = (bottomLeft.y() + bottomRight.y()) / 2;
    ScreenGeometry screen;
    screen.width = (right - left) * 8 / 6;
    screen.height = (bottom - top) * 8 / 6;
    screen.x = left - screen.width / 8;
    screen.y = top - screen.height / 8;
    return screen;
}

} // namespace

Firmware::Firmware(Profile profile, Clock theClock)
    : features(std::move(profile))
    , clock(std::move(theClock))
    , startedAt(clock())
    , generator(features.seed)
    , lightsX(size_t(features.lightsX))
    , lightsY(size_t(features.lightsY))
    , turn(features.rotation)
{
    restart();
}

void Firmware::restart()
{
    startedAt = clock();
    replies.clear();
    last = reply(0, 0);
    state = Calibration::Idle;
    step = 0;
    gestureSettings.reset();
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

// False: the command is unknown or makes no sense.
bool Firmware::execute(const Frame &request, int arrived)
{
    const UCHAR cls = request[offset::Class];
    const UCHAR sub = request[offset::Sub];
    const UCHAR length = request[offset::Length];
    if (cls == command::Calibration)
        return calibrate(request, arrived);
    if (cls == Settings && sub != settings::GetAdc && sub != settings::Reset)
        return set(request);
    if (cls == Rotation && sub == rotation::Set) {
        if (length != rotation::SetLength || request[rotation::Code] > MaxQuarterTurn)
            return false;
        turn = request[rotation::Code];
        return true;
    }
    if (cls == SerialBaud && sub == serialbaud::Set) {
        if (length != serialbaud::SetLength)
            return false;
        baud = le16(&request[serialbaud::Code]) | request[serialbaud::Code + 2] << 16;
        return true;
    }

    // The others carry nothing.
    if (length != 0)
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
        sayScan(sub);
    else if (cls == Rotation && sub == rotation::Query) {
        sayRotation(rotation::DefaultReply, features.defaultRotation);
        sayRotation(rotation::CurrentReply, turn);
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
            kept = measured;
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
    const auto told = [&request, arrived](int at) {
        return at + 2 <= arrived ? int(le16(&request[size_t(at)])) : 0;
    };
    const ScreenGeometry screen{told(calibration::StartX),       told(calibration::StartY),
                                told(calibration::Width),        told(calibration::Height),
                                told(calibration::DesktopWidth), told(calibration::DesktopHeight)};
    const bool isWhole = arrived >= calibration::Height + 2;
    if (isWhole && (screen.width == 0 || screen.height == 0))
        return false;
    if (state != Calibration::Offered || step != calibration::Check)
        return true;

    const ScreenGeometry shown = isWhole ? screen : screenOf(touches);
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
    Frame end = reply(command::Calibration, calibration::End);
    end[calibration::DeviationX] = UCHAR(measured.deviationX);
    end[calibration::DeviationY] = UCHAR(measured.deviationY);
    answer({end});
    return true;
}

bool Firmware::set(const Frame &request)
{
    const UCHAR length = request[offset::Length];
    switch (request[offset::Sub]) {
    case settings::SetGestures:
        if (length != settings::GesturesLength)
            return false;
        gestureSettings = {request[settings::AllEnabled],
                           request[settings::RightButtonEnabled],
                           le16(&request[settings::RightButtonDuration]),
                           request[settings::RightButtonRange],
                           request[settings::WheelEnabled],
                           request[settings::WheelSensitivity]};
        return true;
    case settings::SetAdc:
        if (length != settings::AdcLength)
            return false;
        adc = {le16(&request[settings::MinAdc]),       le16(&request[settings::MaxAdc]),
               le16(&request[settings::MinEdgeAdc]),   le16(&request[settings::MaxEdgeAdc]),
               le16(&request[settings::AdcThreshold]), le16(&request[settings::EdgeAdcThreshold])};
        return true;
    case settings::SetLight:
        return length == settings::SetLightLength && setLight(request);
    case settings::SwitchLight:
        return length == settings::SwitchLightLength && request[settings::LightSwitch] <= 1 &&
               setLight(request);
    case settings::GetLight:
        return length == settings::GetLightLength && setLight(request);
    default:
        return false;
    }
}

// The three commands that name a light, each answered by how the light is then.
bool Firmware::setLight(const Frame &request)
{
    const UCHAR axis = request[settings::LightAxis];
    if (axis != settings::AxisX && axis != settings::AxisY)
        return false;
    const int number = le16(&request[settings::LightNumber]);
    if (number >= lights(axis))
        return false;
    LightState &light = (axis == settings::AxisX ? lightsX : lightsY)[size_t(number)];
    if (request[offset::Sub] == settings::SetLight)
        light.offset = signedByte(request[settings::LightOffset]);
    else if (request[offset::Sub] == settings::SwitchLight)
        light.off = request[settings::LightSwitch] != 0;
    sayLight(axis, number);
    return true;
}

void Firmware::sayFirmware()
{
    Frame words = reply(command::Firmware, replyTo(firmware::Query), FirmwareLength);
    putLe16(&words[firmware::Revision], int(features.revision & 0xFFFF));
    words[firmware::Revision + 2] = UCHAR(features.revision >> 16);
    putLe16(&words[firmware::Checksum], int(features.checksum & 0xFFFF));
    putLe16(&words[firmware::Checksum + 2], int(features.checksum >> 16));
    putLe16(&words[firmware::ProductNum], int(features.number & 0xFFFF));
    // Number and date share a byte.
    words[firmware::ProductDate] =
        UCHAR((features.number >> 16 & 0x0F) | (features.date & 0x0F) << 4);
    words[firmware::ProductDate + 1] = UCHAR(features.date >> 4 & 0xFF);
    words[firmware::ProductDate + 2] = UCHAR(features.date >> 12 & 0x0F);
    words[firmware::ProductFamily] = features.family;
    answer({words});
}

void Firmware::sayAdc()
{
    pairs = true;
    Frame words = reply(Settings, replyTo(settings::GetAdc), AdcReplyLength);
    putLe16(&words[settings::MinAdc], adc.min);
    putLe16(&words[settings::MaxAdc], adc.max);
    putLe16(&words[settings::MinEdgeAdc], adc.minEdge);
    putLe16(&words[settings::MaxEdgeAdc], adc.maxEdge);
    putLe16(&words[settings::AdcThreshold], adc.threshold);
    putLe16(&words[settings::EdgeAdcThreshold], adc.edgeThreshold);
    putLe16(&words[settings::AdcLightsX], features.lightsX);
    putLe16(&words[settings::AdcLightsY], features.lightsY);
    answer({words});
}

void Firmware::sayLight(UCHAR axis, int number)
{
    const Reading reading = measure(axis, number);
    const LightState own = light(axis, number);
    Frame words = reply(Settings, replyTo(settings::GetLight), LightLength);
    words[settings::LightAxis] = axis;
    putLe16(&words[settings::LightNumber], number);
    words[settings::LightOffset] = UCHAR(own.offset);
    words[settings::LightAgc] = UCHAR(reading.agc);
    putLe16(&words[settings::LightAdc], reading.adc);
    putLe16(&words[settings::LightOrg], reading.org);
    words[settings::LightOff] = own.off ? 1 : 0;
    answer({words});
}

void Firmware::sayCounts()
{
    pairs = false;
    Frame words = reply(Scan, replyTo(scan::Counts), CountsLength);
    putLe16(&words[scan::CountX], features.lightsX);
    putLe16(&words[scan::CountY], features.lightsY);
    answer({words});
}

void Firmware::sayScan(UCHAR axis)
{
    const int perPage = pairs ? scan::PairsPerPage : scan::LevelsPerPage;
    const int bytesPerLight = pairs ? 2 : 1;
    const UCHAR lightAxis = axis == scan::AxisX ? settings::AxisX : settings::AxisY;
    const int count = lights(lightAxis);
    std::vector<Frame> pages;
    for (int first = 0; first < count; first += perPage) {
        const int onPage = std::min(perPage, count - first);
        Frame page = reply(Scan, replyTo(axis), lengthUpTo(scan::Levels + onPage * bytesPerLight));
        putLe16(&page[scan::FirstLight], first);
        auto byte = page.begin() + scan::Levels;
        for (int i = 0; i < onPage; ++i) {
            const Reading reading = measure(lightAxis, first + i);
            *byte++ = UCHAR(reading.adc / AdcPerLevel);
            if (pairs)
                *byte++ = UCHAR(reading.agc);
        }
        pages.push_back(page);
    }
    answer(pages);
}

void Firmware::sayRotation(UCHAR sub, UCHAR code)
{
    Frame words = reply(Rotation, sub, RotationLength);
    words[rotation::Code] = code;
    answer({words});
}

void Firmware::sayCalibration(UCHAR sub)
{
    answer({reply(command::Calibration, sub)});
}

// A host that asks again wants the answer of now, and one that asks faster than it reads would
// otherwise fill the queue: what still waits of the same kind is dropped.
void Firmware::answer(const std::vector<Frame> &pages)
{
    std::erase_if(replies,
                  [&pages](const Frame &waiting) { return sameKind(waiting, pages.front()); });
    replies.insert(replies.end(), pages.begin(), pages.end());
}

void Firmware::dropReplies(UCHAR cls)
{
    std::erase_if(replies, [cls](const Frame &waiting) { return waiting[offset::Class] == cls; });
}

int Firmware::lights(UCHAR axis) const
{
    return axis == settings::AxisX ? features.lightsX : features.lightsY;
}

Firmware::Reading Firmware::measure(UCHAR axis, int number)
{
    const int count = lights(axis);
    // -1 at one end of the axis, 1 at the other.
    const double place = count > 1 ? 2.0 * number / (count - 1) - 1.0 : 0.0;
    const int droop = int(std::lround(features.curve * place * place));
    const int agc = std::min(MiddleAgc + droop, MaxAgc);
    const auto found = std::find_if(features.oddLights.begin(), features.oddLights.end(),
                                    [axis, number](const OddLight &light) {
                                        return light.axis == axis && light.number == number;
                                    });
    static const OddLight usual;
    const OddLight &odd = found == features.oddLights.end() ? usual : *found;
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
    const int level = odd.level.value_or(std::max(features.level - droop, 0));
    const int org = std::clamp(level * AdcPerLevel + noise, 0, MaxAdcReading);
    // One step of gain is worth one level.
    return {std::clamp(org + own.offset * AdcPerLevel, 0, MaxAdcReading), agc, org};
}

} // namespace sim
