// SPDX-License-Identifier: GPL-3.0-or-later

#include "records.h"

#include <algorithm>

namespace command {

namespace {

// The length of a reply whose last value ends before a byte.
constexpr UCHAR lengthUpTo(int end)
{
    return UCHAR(end - offset::Payload);
}

void putLines(Frame &frame, const AdcLines &lines)
{
    putLe16(frame, settings::MinAdc, lines.min);
    putLe16(frame, settings::MaxAdc, lines.max);
    putLe16(frame, settings::MinEdgeAdc, lines.minEdge);
    putLe16(frame, settings::MaxEdgeAdc, lines.maxEdge);
    putLe16(frame, settings::AdcThreshold, lines.threshold);
    putLe16(frame, settings::EdgeAdcThreshold, lines.edgeThreshold);
}

AdcLines linesOf(const Frame &frame)
{
    return {le16(frame, settings::MinAdc),       le16(frame, settings::MaxAdc),
            le16(frame, settings::MinEdgeAdc),   le16(frame, settings::MaxEdgeAdc),
            le16(frame, settings::AdcThreshold), le16(frame, settings::EdgeAdcThreshold)};
}

void putLight(Frame &frame, const LightName &light)
{
    frame[settings::LightAxis] = light.axis;
    putLe16(frame, settings::LightNumber, light.number);
}

LightName lightOf(const Frame &frame)
{
    return {frame[settings::LightAxis], le16(frame, settings::LightNumber)};
}

} // namespace

Frame Gestures::encode() const
{
    Frame frame = request(Settings, settings::SetGestures, settings::GesturesLength);
    putByte(frame, settings::AllEnabled, allEnabled);
    putByte(frame, settings::RightButtonEnabled, rightButtonEnabled);
    putLe16(frame, settings::RightButtonDuration, rightButtonDuration);
    putByte(frame, settings::RightButtonRange, rightButtonRange);
    putByte(frame, settings::WheelEnabled, wheelEnabled);
    putByte(frame, settings::WheelSensitivity, wheelSensitivity);
    return frame;
}

std::optional<Gestures> Gestures::decode(const Frame &frame)
{
    if (!is(frame, Settings, settings::SetGestures))
        return {};
    return Gestures{frame[settings::AllEnabled],
                    frame[settings::RightButtonEnabled],
                    le16(frame, settings::RightButtonDuration),
                    frame[settings::RightButtonRange],
                    frame[settings::WheelEnabled],
                    frame[settings::WheelSensitivity]};
}

Frame AdcLines::encode() const
{
    Frame frame = request(Settings, settings::SetAdc, settings::AdcLength);
    putLines(frame, *this);
    return frame;
}

std::optional<AdcLines> AdcLines::decode(const Frame &frame)
{
    if (!is(frame, Settings, settings::SetAdc))
        return {};
    return linesOf(frame);
}

Frame LightCounts::encode() const
{
    Frame frame = report(Scan, replyTo(scan::Counts), lengthUpTo(scan::CountY + 2));
    putLe16(frame, scan::CountX, x);
    putLe16(frame, scan::CountY, y);
    return frame;
}

std::optional<LightCounts> LightCounts::decode(const Frame &frame)
{
    if (!is(frame, Scan, replyTo(scan::Counts)))
        return {};
    return LightCounts{le16(frame, scan::CountX), le16(frame, scan::CountY)};
}

Frame AdcReport::encode() const
{
    Frame frame = report(Settings, replyTo(settings::GetAdc), lengthUpTo(settings::AdcLightsY + 2));
    putLines(frame, lines);
    putLe16(frame, settings::AdcLightsX, counts.x);
    putLe16(frame, settings::AdcLightsY, counts.y);
    return frame;
}

std::optional<AdcReport> AdcReport::decode(const Frame &frame)
{
    if (!is(frame, Settings, replyTo(settings::GetAdc)))
        return {};
    return AdcReport{linesOf(frame),
                     {le16(frame, settings::AdcLightsX), le16(frame, settings::AdcLightsY)}};
}

Frame LightRequest::encode() const
{
    Frame frame = request(Settings, sub);
    putLight(frame, light);
    if (sub == settings::SetLight) {
        frame[offset::Length] = settings::SetLightLength;
        putByte(frame, settings::LightOffset, offset);
    } else if (sub == settings::SwitchLight) {
        frame[offset::Length] = settings::SwitchLightLength;
        putByte(frame, settings::LightSwitch, off ? 1 : 0);
    } else {
        frame[offset::Length] = settings::GetLightLength;
    }
    return frame;
}

std::optional<LightRequest> LightRequest::decode(const Frame &frame)
{
    const UCHAR sub = frame[offset::Sub];
    if (frame[offset::Class] != Settings ||
        (sub != settings::SetLight && sub != settings::GetLight && sub != settings::SwitchLight))
        return {};
    LightRequest request{sub, lightOf(frame)};
    if (sub == settings::SetLight)
        request.offset = signedByte(frame, settings::LightOffset);
    else if (sub == settings::SwitchLight)
        request.off = frame[settings::LightSwitch] != 0;
    return request;
}

Frame LightReport::encode() const
{
    Frame frame = report(Settings, replyTo(settings::GetLight), lengthUpTo(settings::LightOff + 1));
    putLight(frame, light);
    putByte(frame, settings::LightOffset, offset);
    putByte(frame, settings::LightAgc, agc);
    putLe16(frame, settings::LightAdc, adc);
    putLe16(frame, settings::LightOrg, org);
    putByte(frame, settings::LightOff, off ? 1 : 0);
    return frame;
}

std::optional<LightReport> LightReport::decode(const Frame &frame)
{
    if (!is(frame, Settings, replyTo(settings::GetLight)))
        return {};
    return LightReport{lightOf(frame),
                       signedByte(frame, settings::LightOffset),
                       frame[settings::LightAgc],
                       le16(frame, settings::LightAdc),
                       le16(frame, settings::LightOrg),
                       frame[settings::LightOff] != 0};
}

Frame ScanPage::encode() const
{
    Frame frame = report(Scan, replyTo(axis), lengthUpTo(scan::Levels + size));
    putLe16(frame, scan::FirstLight, first);
    std::copy_n(bytes.begin(), size, frame.begin() + scan::Levels);
    return frame;
}

std::optional<ScanPage> ScanPage::decode(const Frame &frame)
{
    const bool isX = is(frame, Scan, replyTo(scan::AxisX));
    if (!isX && !is(frame, Scan, replyTo(scan::AxisY)))
        return {};
    ScanPage page{isX ? scan::AxisX : scan::AxisY, le16(frame, scan::FirstLight)};
    std::copy_n(frame.begin() + scan::Levels, Room, page.bytes.begin());
    page.size = std::clamp(frame[offset::Length] + offset::Payload - scan::Levels, 0, Room);
    return page;
}

Frame RotationReport::encode() const
{
    Frame frame = report(Rotation, sub, lengthUpTo(rotation::Code + 1));
    frame[rotation::Code] = code;
    return frame;
}

std::optional<RotationReport> RotationReport::decode(const Frame &frame)
{
    if (!is(frame, Rotation, rotation::DefaultReply) &&
        !is(frame, Rotation, rotation::CurrentReply))
        return {};
    return RotationReport{frame[offset::Sub], frame[rotation::Code]};
}

Frame FirmwareRecord::encode() const
{
    Frame frame =
        report(Firmware, replyTo(firmware::Query), lengthUpTo(firmware::ProductFamily + 1));
    putLe24(frame, firmware::Revision, revision);
    putLe32(frame, firmware::Checksum, checksum);
    // Number and date share a byte.
    putLe16(frame, firmware::ProductNum, int(number & 0xFFFF));
    putLe24(frame, firmware::ProductDate, (number >> 16 & 0x0F) | (date & 0xFFFF) << 4);
    frame[firmware::ProductFamily] = family;
    return frame;
}

std::optional<FirmwareRecord> FirmwareRecord::decode(const Frame &frame)
{
    if (!is(frame, Firmware, replyTo(firmware::Query)))
        return {};
    return FirmwareRecord{le24(frame, firmware::Revision), le32(frame, firmware::Checksum),
                          le20(frame, firmware::ProductNum),
                          le20(frame, firmware::ProductDate) >> 4, frame[firmware::ProductFamily]};
}

Frame CalibrationCheck::encode() const
{
    Frame frame = request(Calibration, calibration::Check);
    putLe16(frame, calibration::StartX, x);
    putLe16(frame, calibration::StartY, y);
    putLe16(frame, calibration::Width, width);
    putLe16(frame, calibration::Height, height);
    putLe16(frame, calibration::DesktopWidth, desktopWidth);
    putLe16(frame, calibration::DesktopHeight, desktopHeight);
    return frame;
}

std::optional<CalibrationCheck> CalibrationCheck::decode(const Frame &frame)
{
    if (!is(frame, Calibration, calibration::Check))
        return {};
    return CalibrationCheck{
        le16(frame, calibration::StartX),       le16(frame, calibration::StartY),
        le16(frame, calibration::Width),        le16(frame, calibration::Height),
        le16(frame, calibration::DesktopWidth), le16(frame, calibration::DesktopHeight)};
}

Frame CalibrationEnd::encode() const
{
    Frame frame = report(Calibration, calibration::End);
    putByte(frame, calibration::DeviationX, deviationX);
    putByte(frame, calibration::DeviationY, deviationY);
    return frame;
}

std::optional<CalibrationEnd> CalibrationEnd::decode(const Frame &frame)
{
    if (!is(frame, Calibration, calibration::End))
        return {};
    return CalibrationEnd{signedByte(frame, calibration::DeviationX),
                          signedByte(frame, calibration::DeviationY)};
}

} // namespace command
