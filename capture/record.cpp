// SPDX-License-Identifier: GPL-3.0-or-later

#include "record.h"

#include <QtEndian>

#include <algorithm>

namespace capture {

namespace {

// The first two bytes of a packet: link types for one's own use are everybody's.
constexpr char Magic1 = 'Q';
constexpr char Magic2 = 'v';
constexpr UCHAR FormatVersion = 1;

// Places of the header's bytes.
constexpr int VersionAt = 2;
constexpr int KindAt = 3;
constexpr int OverAt = 4;
constexpr int ResultAt = 5;
constexpr int ReservedAt = 6;
constexpr int LostAt = 8;

constexpr UCHAR LastKind = UCHAR(Kind::LinkEnded);
constexpr UCHAR LastOver = UCHAR(Over::Serial);
constexpr UCHAR LastResult = 2;

UCHAR byteAt(QByteArrayView packet, int place)
{
    return UCHAR(packet[place]);
}

} // namespace

QByteArray encode(const Record &record)
{
    QByteArray packet(HeaderSize, '\0');
    packet[0] = Magic1;
    packet[1] = Magic2;
    packet[VersionAt] = char(FormatVersion);
    packet[KindAt] = char(record.kind);
    packet[OverAt] = char(record.over);
    if (record.isFrame())
        packet[ResultAt] = char(record.result);
    else if (record.kind == Kind::LinkEnded)
        packet[ResultAt] = char(record.end);
    qToLittleEndian(record.lost, packet.data() + LostAt);
    if (record.isFrame())
        packet.append(reinterpret_cast<const char *>(record.frame.data()), FrameSize);
    return packet;
}

std::optional<Record> decode(QByteArrayView packet, std::chrono::microseconds time)
{
    if (packet.size() < HeaderSize || packet[0] != Magic1 || packet[1] != Magic2 ||
        byteAt(packet, VersionAt) != FormatVersion || byteAt(packet, KindAt) > LastKind ||
        byteAt(packet, OverAt) > LastOver || byteAt(packet, ResultAt) > LastResult ||
        qFromLittleEndian<quint16>(packet.data() + ReservedAt) != 0)
        return {};
    Record record;
    record.time = time;
    record.kind = Kind(byteAt(packet, KindAt));
    record.over = Over(byteAt(packet, OverAt));
    record.lost = qFromLittleEndian<quint32>(packet.data() + LostAt);
    if (packet.size() != (record.isFrame() ? PacketSize : HeaderSize))
        return {};
    if (record.isFrame()) {
        record.result = Result(byteAt(packet, ResultAt));
        std::copy_n(packet.begin() + HeaderSize, FrameSize, record.frame.begin());
    } else if (record.kind == Kind::LinkEnded) {
        record.end = End(byteAt(packet, ResultAt));
    } else if (byteAt(packet, ResultAt) != 0) {
        return {};
    }
    return record;
}

} // namespace capture
