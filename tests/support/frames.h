// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/struct.h"

#include <QByteArray>
#include <QString>

#include <algorithm>

// Frames in tests are typed as hexadecimal text.

// The text begins at byte 1 of the frame; byte 0 is zero, as hosts leave it.
inline Frame hostFrame(const char *text)
{
    const QByteArray bytes = QByteArray::fromHex(text);
    Frame frame{};
    std::copy(bytes.begin(), bytes.end(), frame.begin() + 1);
    return frame;
}

// The same as a device sends it.
inline Frame deviceFrame(const char *text)
{
    Frame frame = hostFrame(text);
    frame[0] = 0xFC;
    return frame;
}

// A whole frame from byte 0 on, without the zeros at its end: "FC A7 82 02 00 03".
inline QByteArray text(const Frame &frame)
{
    QByteArray bytes(reinterpret_cast<const char *>(frame.data()), FrameSize);
    while (bytes.endsWith('\0'))
        bytes.chop(1);
    return bytes.toHex(' ').toUpper();
}
