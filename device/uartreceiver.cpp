#include "uartreceiver.h"

namespace {

constexpr int HeaderSize = 5; // frame bytes 0 to 4

} // namespace

int UartReceiver::bodySize() const
{
    return RecvBufUart[command::offset::Length] + command::serial::HeaderSize +
           command::serial::TrailerSize - HeaderSize;
}

bool UartReceiver::tooLong() const
{
    return HeaderSize + bodySize() > int(RecvBufUart.size());
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
        return {&RecvBufUart[HeaderSize], tooLong() ? 0 : bodySize()};
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
        // No frame is longer than the buffer; that, like a wrong report id, was noise.
        return !tooLong() && RecvBufUart[command::offset::ReportId] == command::ReportId
                   ? Outcome::FrameFound
                   : Outcome::Moved;
    }
    return Outcome::Waits;
}
