// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "commands.h"
#include "malvoutil.h"

// Building one frame and reading from one.
namespace command {

// A frame of this kind, all else zero: as the host sends it.
constexpr Frame request(UCHAR commandClass, UCHAR sub, UCHAR length = 0)
{
    Frame frame{};
    frame[offset::Class] = commandClass;
    frame[offset::Sub] = sub;
    frame[offset::Length] = length;
    return frame;
}

// The same as a device sends it.
constexpr Frame report(UCHAR commandClass, UCHAR sub, UCHAR length = 0)
{
    Frame frame = request(commandClass, sub, length);
    frame[offset::ReportId] = ReportId;
    return frame;
}

constexpr bool is(const Frame &frame, UCHAR commandClass, UCHAR sub)
{
    return frame[offset::Class] == commandClass && frame[offset::Sub] == sub;
}

// What the pointer of a signal or slot points at, which is valid during the call only.
inline Frame frameAt(const UCHAR *bytes)
{
    Frame frame;
    MALVOUTIL::Buf_util::CopyBuf(bytes, frame.data(), FrameSize);
    return frame;
}

// Unsigned values of so many bits at a byte of a frame, low byte first. 20 bits are two bytes and
// the low half of a third.
constexpr int le16(const Frame &frame, int at)
{
    return frame[size_t(at)] | frame[size_t(at) + 1] << 8;
}

constexpr quint32 le20(const Frame &frame, int at)
{
    return quint32(le16(frame, at) | (frame[size_t(at) + 2] & 0x0F) << 16);
}

constexpr quint32 le24(const Frame &frame, int at)
{
    return quint32(le16(frame, at) | frame[size_t(at) + 2] << 16);
}

constexpr quint32 le32(const Frame &frame, int at)
{
    return quint32(le16(frame, at)) | quint32(le16(frame, at + 2)) << 16;
}

// A byte as a value from -128 to 127.
constexpr int signedByte(const Frame &frame, int at)
{
    return qint8(frame[size_t(at)]);
}

// Writes the low bits of a value; those above are lost.
constexpr void putByte(Frame &frame, int at, int value)
{
    frame[size_t(at)] = UCHAR(value & 0xFF);
}

constexpr void putLe16(Frame &frame, int at, int value)
{
    putByte(frame, at, value);
    putByte(frame, at + 1, value >> 8);
}

constexpr void putLe24(Frame &frame, int at, quint32 value)
{
    putLe16(frame, at, int(value & 0xFFFF));
    putByte(frame, at + 2, int(value >> 16));
}

constexpr void putLe32(Frame &frame, int at, quint32 value)
{
    putLe16(frame, at, int(value & 0xFFFF));
    putLe16(frame, at + 2, int(value >> 16));
}

} // namespace command
