// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/filedescriptor.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>

#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>

// An end of a serial line that is open.
struct LineEnd
{
    // Takes what comes within the time, up to size bytes.
    QByteArray take(qsizetype size, int milliseconds = 2000) const
    {
        QByteArray all;
        QDeadlineTimer deadline(milliseconds);
        while (all.size() < size && !deadline.hasExpired()) {
            pollfd p{.fd = fd.get(), .events = POLLIN, .revents = 0};
            if (poll(&p, 1, int(deadline.remainingTime())) != 1 || !(p.revents & POLLIN))
                break;
            QByteArray part(size - all.size(), Qt::Uninitialized);
            const ssize_t n = ::read(fd.get(), part.data(), size_t(part.size()));
            if (n <= 0)
                break;
            all += part.first(n);
        }
        return all;
    }

    void give(const QByteArray &bytes) const
    {
        if (::write(fd.get(), bytes.constData(), size_t(bytes.size())) != bytes.size())
            qFatal("the other end takes no bytes");
    }

    FileDescriptor fd;
};

// The far end of a serial line; the near end is a pseudo-terminal's node.
struct FarEnd : LineEnd
{
    FarEnd()
        : LineEnd{FileDescriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))}
    {
        std::array<char, 64> path{};
        if (grantpt(fd.get()) == 0 && unlockpt(fd.get()) == 0 &&
            ptsname_r(fd.get(), path.data(), path.size()) == 0)
            node = QString::fromLatin1(path.data());
    }

    // What the near end is set to; the far end of a pseudo-terminal answers for it.
    termios2 settings() const
    {
        termios2 t{};
        if (ioctl(fd.get(), TCGETS2, &t) != 0)
            qFatal("TCGETS2 failed");
        return t;
    }

    int waiting() const
    {
        int n = -1;
        if (ioctl(fd.get(), FIONREAD, &n) != 0)
            qFatal("FIONREAD failed");
        return n;
    }

    QString node;
};

// What all threads of this process have used.
inline std::chrono::nanoseconds processorTime()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return std::chrono::seconds(t.tv_sec) + std::chrono::nanoseconds(t.tv_nsec);
}
