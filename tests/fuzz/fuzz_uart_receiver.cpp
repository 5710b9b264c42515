// SPDX-License-Identifier: GPL-3.0-or-later

#include "demand.h"
#include "device/uartreceiver.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

using Bytes = std::vector<UCHAR>;

// The bytes that have arrived of all that come.
struct Line
{
    long long size() const { return static_cast<long long>(arrived - taken); }
    long long readData(char *data, long long maxSize)
    {
        demand(maxSize > 0 && maxSize <= size(), "no more is read than waits");
        std::memcpy(data, &all[taken], size_t(maxSize));
        taken += size_t(maxSize);
        return maxSize;
    }

    const Bytes &all;
    size_t arrived = 0;
    size_t taken = 0;
};

using Sender = UartReceiver::Sender;

// Where each frame begins and ends, as one reads all bytes from left to right: after two sync
// bytes and a header of five comes as much as the header's fourth byte says and one more. Of a
// device's frames, a header that promises more than 66 bytes in all is passed over, and so is what
// begins with no FC. Of a host's, no frame has more than 64 bytes.
std::vector<Bytes> framesIn(const Bytes &bytes, Sender sender)
{
    std::vector<Bytes> frames;
    size_t at = 0;
    while (at + 7 <= bytes.size()) {
        if (bytes[at] != 0x51) {
            at += 1;
        } else if (bytes[at + 1] != 0x56) {
            at += 2;
        } else if (sender == Sender::Device && bytes[at + 5] > 60) {
            at += 7;
        } else {
            const size_t most = sender == Sender::Host ? 64 : 66;
            const size_t end = at + 2 + std::min<size_t>(6 + bytes[at + 5], most);
            if (end > bytes.size())
                break;
            if (sender == Sender::Host || bytes[at + 2] == 0xFC)
                frames.emplace_back(bytes.begin() + long(at) + 2, bytes.begin() + long(end));
            at = end;
        }
    }
    return frames;
}

// Each piece is one byte, its size, and so many bytes of the line.
struct Pieces
{
    Bytes bytes;
    std::vector<size_t> cuts;
};

Pieces cutUp(const UCHAR *input, size_t size)
{
    Pieces pieces;
    for (size_t at = 0; at < size;) {
        const size_t length = std::min<size_t>(input[at], size - at - 1);
        pieces.bytes.insert(pieces.bytes.end(), input + at + 1, input + at + 1 + length);
        pieces.cuts.push_back(pieces.bytes.size());
        at += 1 + length;
    }
    return pieces;
}

std::vector<Bytes> received(const Bytes &bytes, const std::vector<size_t> &cuts, Sender sender)
{
    std::vector<Bytes> frames;
    UartReceiver receiver(sender);
    Line line{.all = bytes};
    for (const size_t cut : cuts) {
        line.arrived = cut;
        for (size_t steps = 0;; steps++) {
            demand(steps <= 2 * bytes.size() + 2, "the bytes that wait take a bounded time");
            const UartReceiver::Outcome outcome = receiver.step(line);
            if (outcome == UartReceiver::Outcome::Waits)
                break;
            if (outcome == UartReceiver::Outcome::FrameFound)
                frames.emplace_back(receiver.frame(), receiver.frame() + receiver.frameLength());
        }
        demand(line.size() < 62, "what waits is less than the longest body");
    }
    return frames;
}

} // namespace

// Any bytes on the line, from whichever end and however cut, give the frames that a plain reading
// of them finds.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *input, size_t size)
{
    const Bytes whole(input, input + size);
    const Pieces pieces = cutUp(input, size);
    for (const Sender sender : {Sender::Device, Sender::Host}) {
        demand(received(whole, {whole.size()}, sender) == framesIn(whole, sender), "in one piece");
        demand(received(pieces.bytes, pieces.cuts, sender) == framesIn(pieces.bytes, sender),
               "in pieces");
    }
    return 0;
}
