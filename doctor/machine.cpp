// SPDX-License-Identifier: GPL-3.0-or-later

#include "machine.h"

#include "device/struct.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace doctor {

namespace {

constexpr int HexBase = 16;
constexpr auto UsbDevices = "/sys/bus/usb/devices"_L1;

// "/dev/" and what the kernel calls the node.
QString nodeOf(const Machine &machine, const QString &interfaceFolder)
{
    const QString folder = interfaceFolder + "/usbmisc"_L1;
    for (const QString &name : machine.entries(folder)) {
        if (!name.startsWith("hiddev"_L1))
            continue;
        const QStringList lines =
            machine.text(folder + u'/' + name + "/uevent"_L1).split(u'\n', Qt::SkipEmptyParts);
        for (const QString &line : lines) {
            if (line.startsWith("DEVNAME="_L1))
                return "/dev/"_L1 + line.section(u'=', 1);
        }
    }
    return {};
}

} // namespace

Machine::Machine(QString root)
    : rootFolder(std::move(root))
{
}

bool Machine::exists(const QString &path) const
{
    return QFileInfo::exists(rootFolder + path);
}

QString Machine::text(const QString &path) const
{
    QFile file(rootFolder + path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

QStringList Machine::entries(const QString &folder) const
{
    return QDir(rootFolder + folder)
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QString Machine::linkName(const QString &path) const
{
    return QFile::symLinkTarget(rootFolder + path).section(u'/', -1);
}

QString Machine::kernelRelease() const
{
    return QSysInfo::kernelVersion();
}

QString Machine::hostName() const
{
    return QSysInfo::machineHostName();
}

bool Machine::mayOpen(const QString &node) const
{
    return ::faccessat(AT_FDCWD, QFile::encodeName(rootFolder + node).constData(), R_OK | W_OK,
                       AT_EACCESS) == 0;
}

DeviceUser Machine::lockHolder(const QString &node) const
{
    return devicelock::holder(rootFolder + node);
}

QList<DeviceUser> Machine::openedBy(const QString &node) const
{
    return devicelock::openedBy(rootFolder + node);
}

NodeRights::User Machine::user() const
{
    return NodeRights::User::current();
}

QProcessEnvironment Machine::environment() const
{
    return QProcessEnvironment::systemEnvironment();
}

QList<UsbFrame> UsbFrame::allOf(const Machine &machine)
{
    QList<UsbFrame> frames;
    const QStringList names = machine.entries(UsbDevices);
    for (const QString &name : names) {
        const QString folder = UsbDevices + u'/' + name;
        const auto number = [&](QLatin1StringView attribute) {
            return machine.text(folder + u'/' + attribute).toUShort(nullptr, HexBase);
        };
        if (number("idVendor"_L1) != VendorId)
            continue;
        UsbFrame frame;
        frame.device = name;
        frame.product = number("idProduct"_L1);
        frame.release = number("bcdDevice"_L1);
        for (const QString &part : names) {
            if (!part.startsWith(name + u':'))
                continue;
            const QString interfaceFolder = UsbDevices + u'/' + part;
            if (frame.interfaceName.isEmpty()) {
                frame.interfaceName = part;
                frame.driver = machine.linkName(interfaceFolder + "/driver"_L1);
            }
            if (frame.node.isEmpty())
                frame.node = nodeOf(machine, interfaceFolder);
        }
        frames.append(frame);
    }
    return frames;
}

} // namespace doctor
