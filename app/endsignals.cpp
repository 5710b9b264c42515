// SPDX-License-Identifier: GPL-3.0-or-later

#include "endsignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr std::array Signals{SIGHUP, SIGINT, SIGTERM};

// Written by the signal handler; -1 while nobody listens.
volatile std::sig_atomic_t wakeUp = -1;

void onSignal(int)
{
    const int error = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeUp, &one, sizeof one);
    errno = error;
}

} // namespace

EndSignals::EndSignals()
{
    wakeUp = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp < 0)
        return; // the signals then end the program at once, as they always do
    auto *notifier = new QSocketNotifier(wakeUp, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        std::uint64_t count = 0;
        if (::read(wakeUp, &count, sizeof count) == sizeof count)
            emit asked();
    });
    struct sigaction action
    {
    };
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int signal : Signals)
        ::sigaction(signal, &action, nullptr);
}

EndSignals::~EndSignals()
{
    for (const int signal : Signals)
        std::signal(signal, SIG_DFL);
    if (wakeUp >= 0)
        ::close(wakeUp);
    wakeUp = -1;
}
