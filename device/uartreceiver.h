// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "commands.h"

#include <array>

// Finds the frames among the bytes of a serial line, at either end of it; putOnLine() is the other
// direction.
//
// A frame follows the two sync bytes and tells its own length. What is no frame is passed over. A
// frame that is not complete is waited for without end, whatever happens to the line meanwhile.
class UartReceiver
{
public:
    // Whose frames are expected. A device's begin with the report id, and a length that the buffer
    // does not hold is noise. A host's begin with anything, and are no longer than FrameSize
    // whatever they say: the calibration class has data where the others have their length.
    enum class Sender { Device, Host };
    enum class Outcome {
        Waits, // until more bytes have arrived
        Moved,
        FrameFound, // frame() holds a whole one
    };

    explicit UartReceiver(Sender sender = Sender::Device)
        : from(sender)
    {
    }

    // Goes one step further on a line with size(), the bytes that can be read, and readData(), as
    // Posix_QextSerialPort has them. To be called again unless it waits.
    template <typename Line>
    Outcome step(Line &line)
    {
        const Piece piece = wanted();
        if (line.size() < piece.size)
            return Outcome::Waits;
        return advance(piece.size == 0 ||
                       line.readData(reinterpret_cast<char *>(piece.to), piece.size) == piece.size);
    }

    // The frame from its report id on; what stands behind its last byte is of no meaning. Valid
    // until the next step.
    UCHAR *frame() { return RecvBufUart.data(); }
    // How many bytes of it came over the line; as long valid.
    int frameLength() const;

    // Forgets a frame that has begun: what comes next begins anew.
    void reset() { Uart_step = HuntSync1; }

private:
    enum Step { ReadHeader = 2, ReadBody = 3, HuntSync1 = 4, HuntSync2 = 1 };
    struct Piece
    {
        UCHAR *to;
        int size; // bytes
    };

    Piece wanted();
    Outcome advance(bool gotAll);
    bool tooLong() const;

    Sender from;
    std::array<UCHAR, command::serial::BufferSize> RecvBufUart{}; // without the sync bytes
    UCHAR sync = 0;                                               // the byte looked at last
    Step Uart_step = HuntSync1;
};
