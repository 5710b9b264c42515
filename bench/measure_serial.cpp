// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/portsettings.h"
#include "device/uartreceiver.h"
#include "figure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int Rounds = 60;
constexpr size_t BytesARound = 4'000'000;
constexpr int BitsAByte = 10; // on the line, with 8 data bits and 1 stop bit
constexpr int TimesTheFastest = 100;

// All bytes are there at once.
struct Line
{
    long long size() const { return static_cast<long long>(bytes.size() - taken); }
    long long readData(char *data, long long maxSize)
    {
        std::memcpy(data, &bytes[taken], size_t(maxSize));
        taken += size_t(maxSize);
        return maxSize;
    }

    const std::string &bytes;
    size_t taken = 0;
};

std::string repeated(const std::string &piece)
{
    std::string all;
    while (all.size() + piece.size() <= BytesARound)
        all += piece;
    return all;
}

std::string frameOf(size_t payload)
{
    return std::string("\x51\x56\xFC\xA5\x81", 5) + char(payload) + std::string(payload + 2, '\0');
}

bool measure(const char *name, const std::string &piece, size_t framesAPiece)
{
    const std::string bytes = repeated(piece);
    // What a line at that many times the fastest rate of the list brings in this time.
    const double lineTime =
        double(bytes.size()) * BitsAByte / (double(bitsPerSecond(BAUD256000)) * TimesTheFastest);
    std::vector<double> shares;
    for (int round = 0; round < Rounds; ++round) {
        UartReceiver receiver;
        Line line{.bytes = bytes};
        size_t frames = 0;
        const auto begin = Clock::now();
        for (;;) {
            const UartReceiver::Outcome outcome = receiver.step(line);
            if (outcome == UartReceiver::Outcome::Waits)
                break;
            if (outcome == UartReceiver::Outcome::FrameFound)
                ++frames;
        }
        shares.push_back(Seconds(Clock::now() - begin).count() / lineTime);
        if (frames != bytes.size() / piece.size() * framesAPiece) {
            std::fprintf(stderr, "%s: %zu frames were found\n", name, frames);
            std::exit(EXIT_FAILURE);
        }
    }
    return print({name, 1, Figure::HeldBy::Maximum, shares});
}

} // namespace

// measure_serial: whether what arrives on a serial line is taken apart faster than it comes.
// Prints lines of the table; the exit code is 0 when the bars hold.
int main()
{
    const bool longest =
        measure("serial, longest frames / their time at 25.6 Mbaud", frameOf(60), 1);
    const bool shortest = measure("serial, empty frames / their time at 25.6 Mbaud", frameOf(0), 1);
    const bool noise = measure("serial, noise / its time at 25.6 Mbaud", {0x51, 0x51, 0x57}, 0);
    return longest && shortest && noise ? 0 : 1;
}
