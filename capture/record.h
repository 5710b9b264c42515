// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/traffic.h"

#include <QByteArray>

#include <chrono>
#include <optional>

// One packet of a recording: a header of HeaderSize bytes and, where it tells of a frame, that
// frame. docs/recordings.md shows the bytes; the numbers below are those of the file.
namespace capture {

// The capture file's link type: the first of those that are free for one's own use.
inline constexpr int LinkType = 147;
inline constexpr int HeaderSize = 12;
inline constexpr int PacketSize = HeaderSize + FrameSize;
// Some two days of a frame on USB. What is larger is neither written nor read.
inline constexpr qint64 MaxFileSize = 256LL * 1024 * 1024;

enum class Kind : UCHAR {
    ToFrame = 0,   // a frame of the host
    FromFrame = 1, // a frame of the device
    LinkBegan = 2,
    LinkEnded = 3,
};

using Over = Traffic::Over;
static_assert(UCHAR(Over::None) == 0 && UCHAR(Over::Usb) == 1 && UCHAR(Over::Serial) == 2);

// What became of a frame.
using Result = Traffic::Result;
static_assert(UCHAR(Result::Done) == 0 && UCHAR(Result::Failed) == 1 &&
              UCHAR(Result::Dropped) == 2);

// How a link ended, as Link::End says it.
enum class End : UCHAR { DeviceGone = 0, Replaced = 1, Closed = 2 };

struct Record
{
    std::chrono::microseconds time{0}; // since the beginning of 1970, UTC
    Kind kind = Kind::ToFrame;
    Over over = Over::None;
    Result result = Result::Done; // of a frame
    End end = End::DeviceGone;    // of LinkEnded
    quint32 lost = 0; // how many records between the one before and this one could not be written
    Frame frame{};    // of ToFrame and FromFrame

    bool isFrame() const { return kind == Kind::ToFrame || kind == Kind::FromFrame; }
    bool operator==(const Record &) const = default;
};

// The packet, without its time.
QByteArray encode(const Record &record);
// Nothing for what is no such packet.
std::optional<Record> decode(QByteArrayView packet, std::chrono::microseconds time);

} // namespace capture
