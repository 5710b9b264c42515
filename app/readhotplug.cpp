// SPDX-License-Identifier: GPL-3.0-or-later

#include "readhotplug.h"

#include "device/struct.h"

#include <QTimer>

#include <linux/netlink.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr auto StartRetry = std::chrono::seconds(1);
// Multicast groups 1 to 4; the kernel speaks in the first, udevd in the second.
constexpr unsigned EventGroups = 0x0F;

FileDescriptor openEventSocket()
{
    FileDescriptor events(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_KOBJECT_UEVENT));
    if (!events.isValid()) {
        std::fprintf(stderr, "socket creating failed%s\n", std::strerror(errno));
        return events;
    }
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_pid = unsigned(::getpid());
    address.nl_groups = EventGroups;
    if (::bind(events.get(), reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        std::fprintf(stderr, "bind error %s\n", std::strerror(errno));
    return events;
}

} // namespace

ReadHotplugThread::ReadHotplugThread()
    : ReadHotplugThread(openEventSocket())
{
}

ReadHotplugThread::ReadHotplugThread(FileDescriptor events)
    : sockfd(std::move(events))
    , wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

ReadHotplugThread::~ReadHotplugThread()
{
    finish();
}

void ReadHotplugThread::begin()
{
    if (!start(QThread::InheritPriority))
        QTimer::singleShot(StartRetry, this, &ReadHotplugThread::begin);
}

void ReadHotplugThread::terminate()
{
    StoppableThread::terminate();
    ::eventfd_write(wakeUp.get(), 1);
}

ReadHotplugThread::Event ReadHotplugThread::parse(QByteArrayView message)
{
    if (message.size() < MinMessage || message.size() > MaxMessage)
        return Event::None;

    const QByteArray vendorProperty =
        "ID_VENDOR_ID=" + QByteArray::number(VendorId, 16).rightJustified(4, '0');
    // The kernel writes its ids without leading zeros. Its message counts as well, because
    // udevd's own message about a removal does not carry the vendor id.
    const QByteArray productProperty = "PRODUCT=" + QByteArray::number(VendorId, 16) + '/';

    Event action = Event::None;
    bool vendor = false;
    qsizetype begin = 0;
    for (qsizetype end; (end = message.indexOf('\0', begin)) >= 0; begin = end + 1) {
        const QByteArrayView property = message.sliced(begin, end - begin);
        if (property.startsWith("ACTION=add"))
            action = Event::Added;
        else if (property.startsWith("ACTION=remove"))
            action = Event::Removed;
        else if (property.startsWith(vendorProperty) || property.startsWith(productProperty))
            vendor = true;
    }
    return vendor ? action : Event::None;
}

void ReadHotplugThread::run()
{
    std::array<pollfd, 2> waited{pollfd{sockfd.get(), POLLIN, 0}, pollfd{wakeUp.get(), POLLIN, 0}};
    while (!stopRequested()) {
        if (::poll(waited.data(), waited.size(), -1) < 0)
            continue; // interrupted
        if (waited[0].revents == 0)
            continue;
        // With MSG_TRUNC the true length of a message that is too long comes back.
        const ssize_t length =
            ::recv(sockfd.get(), buf.data(), buf.size(), MSG_DONTWAIT | MSG_TRUNC);
        if (length < 0) {
            if (errno == ENOBUFS)
                emit EventsLost();
            else if (errno != EINTR && errno != EAGAIN)
                return; // without a working socket nothing more will come
            continue;
        }
        if (length > MaxMessage)
            continue;
        switch (parse(QByteArrayView(buf.data(), length))) {
        case Event::Added:
            emit DeviceAdd();
            break;
        case Event::Removed:
            emit DeviceRemove();
            break;
        case Event::None:
            break;
        }
    }
}
