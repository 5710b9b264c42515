// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "struct.h"

// The vocabulary of the controller's protocol: every command class, sub-command, offset and page
// size stands here once. docs/protocol.md shows each command in bytes.
namespace command {

// HID report id of both directions, and byte 0 of every frame that a device sends.
inline constexpr UCHAR ReportId = 0xFC;

// Where things stand in a frame. 16-bit values go low byte first; there is no checksum.
namespace offset {
inline constexpr int ReportId = 0;
inline constexpr int Class = 1;
inline constexpr int Sub = 2;
inline constexpr int Length = 3; // of the payload; the calibration class carries data here
inline constexpr int Payload = 4;
inline constexpr int Value = 5; // most payloads leave their first byte zero
} // namespace offset

// Byte 1 of a frame.
enum Class : UCHAR {
    Calibration = 0x01,
    OldReset = 0x10,
    Settings = 0xA2,
    Firmware = 0xA3,
    Scan = 0xA5,
    Rotation = 0xA7,
    SerialBaud = 0xB1,
};

// A reply carries its request's sub-command plus this; calibration replies do not.
inline constexpr UCHAR ReplyBit = 0x80;

constexpr UCHAR replyTo(UCHAR sub)
{
    return UCHAR(sub | ReplyBit);
}

// Class Calibration. The device counts 0 to 5 and the host echoes 1 to 5.
namespace calibration {
inline constexpr UCHAR Begin = 0x00;
inline constexpr UCHAR Step1 = 0x01;
inline constexpr UCHAR Step2 = 0x02;
inline constexpr UCHAR Step3 = 0x03;
inline constexpr UCHAR Step4 = 0x04;
inline constexpr UCHAR Check = 0x05;
inline constexpr UCHAR Reset = 0x06; // host: discard the result
inline constexpr UCHAR Save = 0xFF;  // host: keep the result
inline constexpr UCHAR End = 0xFF;   // device: finished, with two deviations
inline constexpr int Targets = 4;
// Check: six 16-bit values in native pixels.
inline constexpr int StartX = 3;
inline constexpr int StartY = 5;
inline constexpr int Width = 7;
inline constexpr int Height = 9;
inline constexpr int DesktopWidth = 11;
inline constexpr int DesktopHeight = 13;
// End: two signed bytes.
inline constexpr int DeviationX = 4;
inline constexpr int DeviationY = 5;
} // namespace calibration

// Class Settings.
namespace settings {
inline constexpr UCHAR SetGestures = 0x00;
inline constexpr UCHAR Reset = 0x03;
inline constexpr UCHAR SetAdc = 0x04;
inline constexpr UCHAR GetAdc = 0x05;
inline constexpr UCHAR SetLight = 0x06;
inline constexpr UCHAR GetLight = 0x07;
inline constexpr UCHAR SwitchLight = 0x08;

// SetGestures. The device expects this length although the values run from byte 5 to byte 11.
inline constexpr UCHAR GesturesLength = 0x05;
inline constexpr int AllEnabled = 5;
inline constexpr int RightButtonEnabled = 6;
inline constexpr int RightButtonDuration = 7; // 16 bits, ms
inline constexpr int RightButtonRange = 9;
inline constexpr int WheelEnabled = 10;
inline constexpr int WheelSensitivity = 11;

// SetAdc and the reply to GetAdc: six 16-bit values; the reply adds the light counts.
inline constexpr UCHAR AdcLength = 0x0C;
inline constexpr int MinAdc = 5;
inline constexpr int MaxAdc = 7;
inline constexpr int MinEdgeAdc = 9;
inline constexpr int MaxEdgeAdc = 11;
inline constexpr int AdcThreshold = 13;
inline constexpr int EdgeAdcThreshold = 15;
inline constexpr int AdcLightsX = 17;
inline constexpr int AdcLightsY = 19;

// SetLight, GetLight, SwitchLight and the reply to GetLight name a light by axis and number.
inline constexpr UCHAR SetLightLength = 0x04;
inline constexpr UCHAR GetLightLength = 0x03;
inline constexpr UCHAR SwitchLightLength = 0x04;
inline constexpr UCHAR AxisX = 1;
inline constexpr UCHAR AxisY = 2;
inline constexpr int LightAxis = 5;
inline constexpr int LightNumber = 6; // 16 bits, 0-based
inline constexpr int LightOffset = 8; // SetLight and the reply: signed byte
inline constexpr int LightSwitch = 8; // SwitchLight: 1 off, 0 on
inline constexpr int LightAgc = 9;
inline constexpr int LightAdc = 10; // 16 bits
inline constexpr int LightOrg = 12; // 16 bits
inline constexpr int LightOff = 14; // not 0: switched off
} // namespace settings

// Class OldReset: the only reset of an older device, and the tail of every reset.
namespace oldreset {
inline constexpr UCHAR Reset = 0x00;
} // namespace oldreset

// Class Firmware; the offsets are those of the reply.
namespace firmware {
inline constexpr UCHAR Query = 0x00;
inline constexpr int Revision = 5;     // 24 bits
inline constexpr int Checksum = 8;     // 32 bits
inline constexpr int ProductNum = 12;  // 20 bits: two bytes and the low half of a third
inline constexpr int ProductDate = 14; // 16 bits: the high half of that byte and 12 bits more
inline constexpr int ProductFamily = 17;
} // namespace firmware

// Class Scan.
namespace scan {
inline constexpr UCHAR Counts = 0x00;
inline constexpr UCHAR AxisX = 0x01;
inline constexpr UCHAR AxisY = 0x02;
inline constexpr int CountX = 5;     // 16 bits
inline constexpr int CountY = 7;     // 16 bits
inline constexpr int FirstLight = 5; // 16 bits, 0-based
inline constexpr int Levels = 7;
// After a counts request a page carries one byte a light, after an ADC settings read two
// (ADC, then AGC).
inline constexpr int LevelsPerPage = 55;
inline constexpr int PairsPerPage = 27;
} // namespace scan

// Class Rotation. A query is answered twice: the default, then the current rotation.
namespace rotation {
inline constexpr UCHAR Set = 0x00;
inline constexpr UCHAR Query = 0x02;
inline constexpr UCHAR DefaultReply = 0x81;
inline constexpr UCHAR CurrentReply = 0x82;
inline constexpr UCHAR SetLength = 0x02;
inline constexpr int Code = 5; // quarter turns, 0 to 3
} // namespace rotation

// Class SerialBaud.
namespace serialbaud {
inline constexpr UCHAR Set = 0x00;
inline constexpr UCHAR SetLength = 0x03;
inline constexpr int Code = 5; // 24 bits: the number of a rate in BaudRateType, not bits per second
} // namespace serialbaud

// The largest frame that exists; storage for lights is sized by these.
inline constexpr int MaxLightsX = 500;
inline constexpr int MaxLightsY = 350;

// Serial framing: two sync bytes, then the frame up to two bytes behind its payload.
namespace serial {
inline constexpr UCHAR Sync1 = UCHAR(VendorId >> 8);
inline constexpr UCHAR Sync2 = UCHAR(VendorId & 0xFF);
inline constexpr int SyncSize = 2;
inline constexpr int HeaderSize = 4;
inline constexpr int TrailerSize = 2;
inline constexpr int BufferSize = SyncSize + FrameSize;

// How many bytes of a frame with this payload length travel, sync bytes included.
constexpr int wireLength(UCHAR payloadLength)
{
    return SyncSize + HeaderSize + payloadLength + TrailerSize;
}
} // namespace serial

} // namespace command
