#include "serialframing.h"

#include <algorithm>
#include <utility>

namespace serial = command::serial;

namespace sim {

namespace {

int frameLength(UCHAR payloadLength)
{
    return std::min(serial::wireLength(payloadLength) - serial::SyncSize, FrameSize);
}

} // namespace

QByteArray serialBytes(const Frame &frame)
{
    QByteArray bytes;
    bytes += char(serial::Sync1);
    bytes += char(serial::Sync2);
    bytes.append(reinterpret_cast<const char *>(frame.data()),
                 frameLength(frame[command::offset::Length]));
    return bytes;
}

std::optional<QByteArray> SerialReader::take(UCHAR byte)
{
    switch (state) {
    case State::Sync1:
        if (byte == serial::Sync1)
            state = State::Sync2;
        return {};
    case State::Sync2:
        state = byte == serial::Sync2 ? State::Frame : State::Sync1;
        return {};
    case State::Frame:
        break;
    }
    got += char(byte);
    if (got.size() < serial::HeaderSize ||
        got.size() < frameLength(UCHAR(got[command::offset::Length])))
        return {};
    state = State::Sync1;
    return std::exchange(got, {});
}

void SerialReader::lose(QByteArray frame, int count)
{
    reset();
    const qsizetype left = serial::SyncSize + frame.size() - count;
    if (left < 1)
        return;
    state = left == 1 ? State::Sync2 : State::Frame;
    frame.truncate(std::max<qsizetype>(left - serial::SyncSize, 0));
    got = frame;
}

void SerialReader::reset()
{
    state = State::Sync1;
    got.clear();
}

} // namespace sim
