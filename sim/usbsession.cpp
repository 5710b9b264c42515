// SPDX-License-Identifier: GPL-3.0-or-later

#include "usbsession.h"

#include "device/filedescriptor.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace sim {

UsbSession::UsbSession(Profile profile, FaultPlan faults, const Clock &clock,
                       const QString &controllerDirectory)
    : Session(std::move(profile), std::move(faults), clock)
    , vhci(controllerDirectory)
{
}

UsbSession::~UsbSession()
{
    UsbSession::release();
}

QString UsbSession::place() const
{
    const std::optional<int> number = port();
    return number ? u"port %1"_s.arg(*number) : QString();
}

// The kernel may ask the device something before this returns; it is answered by the event loop.
QString UsbSession::attach()
{
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return tr("no socket pair for the device: %1")
            .arg(QString::fromLocal8Bit(std::strerror(errno)));
    }
    FileDescriptor ours(ends[0]);
    const FileDescriptor hosts(ends[1]);
    if (QString problem = vhci.attach(hosts.get()); !problem.isEmpty())
        return problem;
    device = std::make_unique<UsbDevice>(frame, log, std::move(ours));
    connect(device.get(), &UsbDevice::logged, this, &UsbSession::logged);
    // Queued: the device is not to vanish while it speaks. By then it may have been replaced.
    ++attachments;
    const auto ifStillThere = [this, number = attachments](auto action) {
        if (device && attachments == number)
            action();
    };
    connect(
        device.get(), &UsbDevice::pulled, this,
        [this, ifStillThere] { ifStillThere([this] { pulled(); }); }, Qt::QueuedConnection);
    connect(
        device.get(), &UsbDevice::lost, this,
        [this, ifStillThere](const QString &reason) {
            ifStillThere([this, &reason] { lost(reason); });
        },
        Qt::QueuedConnection);
    return {};
}

void UsbSession::release()
{
    if (device)
        device->hangUp();
    vhci.detach();
    device.reset();
}

} // namespace sim
