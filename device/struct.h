// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

#include <array>

using UCHAR = unsigned char;

// Every exchange with the controller is one frame of this many bytes (see commands.h).
inline constexpr int FrameSize = 64;
using Frame = std::array<UCHAR, FrameSize>;

// USB vendor id of the touch frame's controller; its two bytes are also the serial sync bytes.
inline constexpr quint16 VendorId = QUORVEL_VENDOR_ID;

// The connected device: the first three fields come from hiddev, the others from its reply to
// the firmware query. An older device (isCurrentGeneration() false) leaves those zero.
struct _HID_VER
{
    quint32 VendorID = 0;
    quint32 ProductID = 0;
    quint32 VersionNumber = 0; // USB device release, binary coded decimal
    quint32 SVNNUM = 0;        // firmware source revision, 24 bits
    quint32 CHECKSUM = 0;      // firmware checksum
    quint32 P_FID = 0;         // product family
    quint32 P_DATE = 0;        // 16 bits
    quint32 P_NUM = 0;         // 20 bits

    bool operator==(const _HID_VER &) const = default;
};
using HID_VER = _HID_VER;

// The one device of this process. Main thread only.
extern HID_VER hidver;

// Releases newer than 0x2FFF answer the firmware query and take the settings-class reset.
inline constexpr bool isCurrentGeneration(quint32 versionNumber)
{
    return versionNumber > 0x2FFF;
}

// A touch point as the device reports it.
struct _MALVOPOINT
{
    UCHAR status;
    float x;
    float y;
    float z;
};
using MALVOPOINT = _MALVOPOINT;

// What a signal test goes by.
struct _TEST_DATA
{
    qint32 upper = 0; // limits in signal units, 0 to 1100
    qint32 lower = 0;
    qint32 interal = 0; // of the continuous test, times 150 ms
    qint32 AGC = 0;     // 0 to 255; the device is not told
    qint32 X_total = 0; // lights as the device reports them, 0 until it has
    qint32 Y_total = 0;
    bool showRip = false;
    bool showAGC = false;
    bool showADC = false;
};
using TEST_DATA = _TEST_DATA;
