// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/filedescriptor.h"

#include <QByteArray>
#include <QString>

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

// A pseudo-terminal: the tool opens path() as its serial port, the test is the other end.
class Pty
{
public:
    Pty()
        : master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (!master.isValid() || ::grantpt(master.get()) != 0 || ::unlockpt(master.get()) != 0)
            qFatal("no pseudo-terminal");
        termios raw{};
        ::tcgetattr(master.get(), &raw);
        ::cfmakeraw(&raw);
        ::tcsetattr(master.get(), TCSANOW, &raw);
    }

    QString path() const { return QString::fromLocal8Bit(::ptsname(master.get())); }
    void send(const QByteArray &bytes)
    {
        if (::write(master.get(), bytes.constData(), size_t(bytes.size())) != bytes.size())
            qFatal("the pseudo-terminal does not take bytes");
    }
    // Until something has arrived.
    void waitForBytes() const
    {
        pollfd waited{master.get(), POLLIN, 0};
        ::poll(&waited, 1, -1);
    }
    // What has arrived by now.
    QByteArray received()
    {
        QByteArray bytes;
        pollfd waited{master.get(), POLLIN, 0};
        while (::poll(&waited, 1, 0) > 0 && (waited.revents & POLLIN)) {
            char buf[512];
            const ssize_t count = ::read(master.get(), buf, sizeof buf);
            if (count <= 0)
                break;
            bytes.append(buf, count);
        }
        return bytes;
    }
    void hangUp()
    {
        const QByteArray node = path().toLocal8Bit();
        numberKept = FileDescriptor(::open(node.constData(), O_RDWR | O_NOCTTY | O_CLOEXEC));
        master = FileDescriptor();
    }

private:
    FileDescriptor master;
    // Else another test would be given the number while the tool still has its lock.
    FileDescriptor numberKept;
};
