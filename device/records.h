// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "frame.h"

#include <array>
#include <optional>

// What the protocol carries, as values: each record is made into a frame here and read from one
// here, and nowhere else. docs/protocol.md shows the bytes.
//
// decode() answers nothing for a frame of another class or sub-command. Lengths are not looked at,
// and what a link has cut off reads as zero. encode() cuts values to the bits that they have.
namespace command {

// Host: how touches become mouse actions.
struct Gestures
{
    int allEnabled = 0;
    int rightButtonEnabled = 0;
    int rightButtonDuration = 0; // ms, 16 bits
    int rightButtonRange = 0;
    int wheelEnabled = 0;
    int wheelSensitivity = 0;

    Frame encode() const;
    static std::optional<Gestures> decode(const Frame &frame);
    bool operator==(const Gestures &) const = default;
};

// Host: between which readings the controller keeps its lights, 16 bits each.
struct AdcLines
{
    int min = 0;
    int max = 0;
    int minEdge = 0;
    int maxEdge = 0;
    int threshold = 0;
    int edgeThreshold = 0;

    Frame encode() const;
    static std::optional<AdcLines> decode(const Frame &frame);
    bool operator==(const AdcLines &) const = default;
};

// How many lights a device has on each axis, 16 bits each.
struct LightCounts
{
    int x = 0;
    int y = 0;

    Frame encode() const;
    static std::optional<LightCounts> decode(const Frame &frame);
    // False for what no frame has and noise on a serial line says.
    bool arePossible() const { return x <= MaxLightsX && y <= MaxLightsY; }
    bool operator==(const LightCounts &) const = default;
};

// Device: the answer to settings::GetAdc.
struct AdcReport
{
    AdcLines lines;
    LightCounts counts;

    Frame encode() const;
    static std::optional<AdcReport> decode(const Frame &frame);
    bool operator==(const AdcReport &) const = default;
};

struct LightName
{
    UCHAR axis = 0; // settings::AxisX or AxisY; a frame may say anything
    int number = 0; // 0-based, 16 bits

    bool operator==(const LightName &) const = default;
};

// Host: asks about a light, sets the offset of its gain, or switches it.
struct LightRequest
{
    UCHAR sub = settings::GetLight; // or SetLight, SwitchLight
    LightName light;
    int offset = 0;   // SetLight: -128 to 127
    bool off = false; // SwitchLight

    Frame encode() const;
    static std::optional<LightRequest> decode(const Frame &frame);
    bool operator==(const LightRequest &) const = default;
};

// Device: how a light is, the answer to each LightRequest.
struct LightReport
{
    LightName light;
    int offset = 0; // of the gain, -128 to 127
    int agc = 0;    // gain, 8 bits
    int adc = 0;    // reading with the offset, 16 bits
    int org = 0;    // reading without it, 16 bits
    bool off = false;

    Frame encode() const;
    static std::optional<LightReport> decode(const Frame &frame);
    bool operator==(const LightReport &) const = default;
};

// Device: a part of a scan. After a counts request each light has one byte, its level; after an
// ADC read it has two, its level and its gain.
struct ScanPage
{
    static constexpr int Room = FrameSize - scan::Levels; // bytes

    UCHAR axis = scan::AxisX; // or scan::AxisY
    int first = 0;            // light of the first byte, 0-based
    std::array<UCHAR, Room> bytes{};
    int size = 0; // of bytes, as far as the frame tells; not above Room

    int level(int light) const { return bytes[size_t(light)]; }
    int pairLevel(int light) const { return bytes[2 * size_t(light)]; }
    int pairGain(int light) const { return bytes[2 * size_t(light) + 1]; }

    Frame encode() const;
    static std::optional<ScanPage> decode(const Frame &frame);
    bool operator==(const ScanPage &) const = default;
};

// Host: turns what the device reports by quarter turns.
struct RotationCommand
{
    UCHAR code = 0; // quarter turns

    Frame encode() const
    {
        Frame frame = request(Rotation, rotation::Set, rotation::SetLength);
        frame[rotation::Code] = code;
        return frame;
    }
    static std::optional<RotationCommand> decode(const Frame &frame)
    {
        if (!is(frame, Rotation, rotation::Set))
            return {};
        return RotationCommand{frame[rotation::Code]};
    }
    bool operator==(const RotationCommand &) const = default;
};

// Device: by how much it turns, or does after a reset.
struct RotationReport
{
    UCHAR sub = rotation::CurrentReply; // or DefaultReply
    UCHAR code = 0;                     // quarter turns; a device may say anything

    Frame encode() const;
    static std::optional<RotationReport> decode(const Frame &frame);
    bool operator==(const RotationReport &) const = default;
};

// Device: what its firmware tells of itself.
struct FirmwareRecord
{
    quint32 revision = 0; // 24 bits
    quint32 checksum = 0;
    quint32 number = 0; // 20 bits
    quint32 date = 0;   // 16 bits
    UCHAR family = 0;

    Frame encode() const;
    static std::optional<FirmwareRecord> decode(const Frame &frame);
    bool operator==(const FirmwareRecord &) const = default;
};

// Either side: a step of the calibration that carries nothing more; the host's Check and the
// device's End carry the two records below. encode() makes the host's.
struct CalibrationStep
{
    UCHAR step = calibration::Begin;

    Frame encode() const
    {
        return request(Calibration, step); // this class has no length
    }
    static std::optional<CalibrationStep> decode(const Frame &frame)
    {
        if (frame[offset::Class] != Calibration)
            return {};
        return CalibrationStep{frame[offset::Sub]};
    }
    bool operator==(const CalibrationStep &) const = default;
};

// Host: where the calibrated screen lies in the desktop, in native pixels, 16 bits each.
struct CalibrationCheck
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int desktopWidth = 0;
    int desktopHeight = 0;

    Frame encode() const;
    static std::optional<CalibrationCheck> decode(const Frame &frame);
    bool operator==(const CalibrationCheck &) const = default;
};

// Device: how far off the touches were, in per cent of the screen, -128 to 127.
struct CalibrationEnd
{
    int deviationX = 0;
    int deviationY = 0;

    Frame encode() const;
    static std::optional<CalibrationEnd> decode(const Frame &frame);
    bool operator==(const CalibrationEnd &) const = default;
};

// Host: the rate of the serial line from now on.
struct BaudCommand
{
    int code = 0; // of BaudRateType, 24 bits

    Frame encode() const
    {
        Frame frame = request(SerialBaud, serialbaud::Set, serialbaud::SetLength);
        putLe24(frame, serialbaud::Code, quint32(code));
        return frame;
    }
    static std::optional<BaudCommand> decode(const Frame &frame)
    {
        if (!is(frame, SerialBaud, serialbaud::Set))
            return {};
        return BaudCommand{int(le24(frame, serialbaud::Code))};
    }
    bool operator==(const BaudCommand &) const = default;
};

} // namespace command
