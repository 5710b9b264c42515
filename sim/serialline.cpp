// SPDX-License-Identifier: GPL-3.0-or-later

#include "serialline.h"

#include <algorithm>
#include <array>
#include <asm/termbits.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>

namespace sim {

namespace {

constexpr size_t ChunkSize = 4096;
constexpr size_t MaxPath = 64;

// Nothing is translated, echoed or waited for.
bool makeRaw(int terminal)
{
    termios2 settings{};
    if (ioctl(terminal, TCGETS2, &settings) != 0)
        return false;
    settings.c_iflag = 0;
    settings.c_oflag = 0;
    settings.c_lflag = 0;
    settings.c_cflag = B9600 | CS8 | CREAD | CLOCAL;
    return ioctl(terminal, TCSETS2, &settings) == 0;
}

} // namespace

std::unique_ptr<SerialLine> SerialLine::open(QString *problem)
{
    std::unique_ptr<SerialLine> line(new SerialLine);
    *problem = line->prepare();
    if (!problem->isEmpty())
        return nullptr;
    line->listener = std::thread([&line = *line] { line.run(); });
    return line;
}

SerialLine::~SerialLine()
{
    if (!listener.joinable())
        return;
    eventfd_write(ending.get(), 1);
    listener.join();
}

QString SerialLine::prepare()
{
    const auto failure = [](const QString &what) {
        return tr("no pseudo-terminal for the line: %1: %2")
            .arg(what, QString::fromLocal8Bit(std::strerror(errno)));
    };
    master = FileDescriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!master.isValid() || ::grantpt(master.get()) != 0 || ::unlockpt(master.get()) != 0)
        return failure(QStringLiteral("/dev/ptmx"));
    std::array<char, MaxPath> name{};
    if (const int error = ::ptsname_r(master.get(), name.data(), name.size()); error != 0) {
        errno = error;
        return failure(QStringLiteral("/dev/ptmx"));
    }
    node = QString::fromLocal8Bit(name.data());
    // The kernel tells that nobody has the terminal open only after somebody had.
    const FileDescriptor once(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!once.isValid() || !makeRaw(once.get()))
        return failure(node);
    openings = FileDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    ending = FileDescriptor(::eventfd(0, EFD_CLOEXEC));
    if (!openings.isValid() || !ending.isValid() ||
        ::inotify_add_watch(openings.get(), name.data(), IN_OPEN) < 0)
        return failure(node);
    return {};
}

int SerialLine::rate() const
{
    termios2 settings{};
    return ioctl(master.get(), TCGETS2, &settings) == 0 ? int(settings.c_ospeed) : 0;
}

qint64 SerialLine::write(const QByteArray &bytes)
{
    return std::max<qint64>(::write(master.get(), bytes.constData(), size_t(bytes.size())), 0);
}

void SerialLine::run()
{
    while (true) {
        // A terminal that nobody has open would be ready all the time.
        std::array<pollfd, 3> waited{{{ending.get(), POLLIN, 0},
                                      {openings.get(), POLLIN, 0},
                                      {opened ? master.get() : -1, POLLIN, 0}}};
        if (::poll(waited.data(), waited.size(), -1) < 0 && errno != EINTR)
            return;
        if (waited[0].revents != 0)
            return;
        if (waited[1].revents != 0) {
            std::array<char, ChunkSize> events; // NOLINT(cppcoreguidelines-pro-type-member-init)
            while (::read(openings.get(), events.data(), events.size()) > 0) {
            }
            setOpen(true);
        }
        if (waited[2].revents != 0)
            hear();
    }
}

void SerialLine::setOpen(bool open)
{
    if (opened.exchange(open) != open)
        emit openChanged(open);
}

void SerialLine::hear()
{
    std::array<char, ChunkSize> chunk; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const ssize_t count = ::read(master.get(), chunk.data(), chunk.size());
    if (count > 0)
        emit heard(QByteArray(chunk.data(), count), rate());
    else if (count == 0 || (errno != EAGAIN && errno != EINTR))
        setOpen(false);
}

} // namespace sim
