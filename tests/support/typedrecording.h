// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

// Recordings typed as hexadecimal text, to be compared with what the product makes of them.

// What every recording of this machine begins with: least significant bytes first, version 2.4,
// packets of at most 76 bytes, link type 147.
inline const QByteArray RecordingHeader =
    QByteArray::fromHex("D4C3B2A1 0200 0400 00000000 00000000 4C000000 93000000");

// A packet at so many seconds and microseconds, four bytes each.
inline QByteArray typedPacket(const QByteArray &time, const QByteArray &bytes)
{
    const QByteArray length = char(bytes.size()) + QByteArray(3, '\0');
    return QByteArray::fromHex(time) + length + length + bytes;
}

inline QByteArray filledUp(const QByteArray &hex, int size)
{
    return QByteArray::fromHex(hex).leftJustified(size, '\0');
}
