// SPDX-License-Identifier: GPL-3.0-or-later

#include "uartreceiver.h"

#include <algorithm>

namespace {

constexpr int HeaderSize = 5; // frame bytes 0 to 4

} // namespace

int UartReceiver::frameLength() const
{
    const int length = command::serial::wireLength(RecvBufUart[command::offset::Length]) -
                       command::serial::SyncSize;
    return from == Sender::Host ? std::min(length, FrameSize) : length;
}

bool UartReceiver::tooLong() const
{
    return frameLength() > int(RecvBufUart.size());
}

// What the next step reads.
UartReceiver::Piece UartReceiver::wanted()
{
    switch (Uart_step) {
    case HuntSync1:
    case HuntSync2:
        break;
    case ReadHeader:
        return {RecvBufUart.data(), HeaderSize};
    case ReadBody:
        return {&RecvBufUart[HeaderSize], tooLong() ? 0 : frameLength() - HeaderSize};
    }
    return {&sync, 1};
}

UartReceiver::Outcome UartReceiver::advance(bool gotAll)
{
    switch (Uart_step) {
    case HuntSync1:
        if (gotAll && sync == command::serial::Sync1)
            Uart_step = HuntSync2;
        return gotAll ? Outcome::Moved : Outcome::Waits;
    case HuntSync2:
        // A first sync byte that stands here is used up: it begins nothing.
        Uart_step = gotAll && sync == command::serial::Sync2 ? ReadHeader : HuntSync1;
        return gotAll ? Outcome::Moved : Outcome::Waits;
    case ReadHeader:
        Uart_step = gotAll ? ReadBody : HuntSync1;
        return Outcome::Moved;
    case ReadBody:
        if (!gotAll)
            return Outcome::Waits;
        Uart_step = HuntSync1;
        if (from == Sender::Host)
            return Outcome::FrameFound;
        // No frame is longer than the buffer; that, like a wrong report id, was noise.
        return !tooLong() && RecvBufUart[command::offset::ReportId] == command::ReportId
                   ? Outcome::FrameFound
                   : Outcome::Moved;
    }
    return Outcome::Waits;
}
