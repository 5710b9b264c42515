// SPDX-License-Identifier: GPL-3.0-or-later

#include "demand.h"
#include "sim/usbdevice.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr size_t HeaderSize = 48; // of a message, there and back

// What sockets are watched with.
struct Application
{
    int count = 1;
    char name[5] = "fuzz";
    char *arguments[2] = {name, nullptr};
    QCoreApplication application{count, arguments};
};

} // namespace

// Whatever a host writes, the device answers or hangs up.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *input, size_t size)
{
    static auto *const application = new Application; // until the process ends
    static_cast<void>(application);
    std::array<int, 2> ends{};
    demand(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) == 0,
           "there is a socket");
    sim::FaultyFrame frame(
        {}, {}, [] { return std::chrono::milliseconds(0); }, true);
    FrameLog log([] { return std::chrono::milliseconds(0); });
    bool lost = false;
    QByteArray answers;
    size_t sent = 0;
    {
        sim::UsbDevice device(frame, log, FileDescriptor(ends[1]));
        QObject::connect(&device, &sim::UsbDevice::lost, &device, [&lost] { lost = true; });
        while (!lost && sent < size) {
            const ssize_t taken = ::send(ends[0], input + sent, size - sent, MSG_NOSIGNAL);
            sent += taken > 0 ? size_t(taken) : 0;
            QCoreApplication::processEvents();
            std::array<char, 4096> some{};
            for (ssize_t got = 1; got > 0;) {
                got = ::read(ends[0], some.data(), some.size());
                answers.append(some.data(), std::max<ssize_t>(got, 0));
            }
            if (taken <= 0)
                break;
        }
    }
    ::close(ends[0]);
    const size_t questions = size / HeaderSize;
    demand(size_t(answers.size()) <= questions * (HeaderSize + sim::UsbDevice::MaxTransfer),
           "it says no more than it was asked for");
    demand(answers.isEmpty() || size_t(answers.size()) >= HeaderSize, "answers have a header");
    demand(lost || sent == size, "it takes what it does not refuse");
    return 0;
}
