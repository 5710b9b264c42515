// SPDX-License-Identifier: GPL-3.0-or-later

#include "vhciport.h"

#include "device/filedescriptor.h"

#include <QFile>
#include <QStringList>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace sim {

namespace {

// How the controller's file "status" names a port that nothing is plugged into.
constexpr auto FreePort = "004"_L1;
constexpr auto FullSpeedHub = "hs"_L1;
constexpr int FullSpeed = 2;
// Bus and device number as the other end would have them; nothing asks for them.
constexpr int DeviceId = 1 << 16 | 2;

// The errno of a write to one of the controller's files, or 0.
int writeWord(const QString &path, const QByteArray &word)
{
    const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC));
    if (!file.isValid())
        return errno;
    return ::write(file.get(), word.constData(), size_t(word.size())) < 0 ? errno : 0;
}

std::vector<int> freePorts(const QString &status)
{
    std::vector<int> ports;
    for (const QString &line : status.split(u'\n')) {
        const QStringList words = line.simplified().split(u' ');
        if (words.size() > 2 && words[0] == FullSpeedHub && words[2] == FreePort)
            ports.push_back(words[1].toInt());
    }
    return ports;
}

} // namespace

QString VhciPort::systemController()
{
    return u"/sys/devices/platform/vhci_hcd.0"_s;
}

VhciPort::VhciPort(QString controllerDirectory)
    : controller(std::move(controllerDirectory))
{
}

VhciPort::~VhciPort()
{
    detach();
}

QString VhciPort::attach(int socket)
{
    detach();
    QFile status(controller + "/status"_L1);
    if (!status.exists())
        return tr("the virtual host controller is not there: load it with modprobe vhci-hcd");
    if (!status.open(QIODevice::ReadOnly))
        return tr("%1 cannot be read: %2").arg(status.fileName(), status.errorString());

    const QString attachFile = controller + "/attach"_L1;
    for (const int candidate : freePorts(QString::fromLatin1(status.readAll()))) {
        const QByteArray word =
            u"%1 %2 %3 %4"_s.arg(candidate).arg(socket).arg(DeviceId).arg(FullSpeed).toLatin1();
        const int error = writeWord(attachFile, word);
        if (error == 0) {
            port = candidate;
            return {};
        }
        if (error == EACCES || error == EPERM)
            return tr("%1 may not be written: run this as root").arg(attachFile);
        // Somebody else may have taken the port meanwhile.
        if (error != EBUSY && error != EINVAL) {
            return tr("%1 refuses the device: %2")
                .arg(attachFile, QString::fromLocal8Bit(std::strerror(error)));
        }
    }
    return tr("no port of the virtual host controller is free: unplug another virtual device");
}

void VhciPort::detach()
{
    if (port)
        writeWord(controller + "/detach"_L1, QByteArray::number(*port));
    port.reset();
}

} // namespace sim
