// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "doctor/machine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSet>
#include <QTemporaryDir>

#include <memory>

// A machine of the test's: files below a temporary folder, and answers. As it comes, everything is
// well: one frame on USB with a node that this user may open and nobody uses, and no serial port.
class MadeUpMachine final : public doctor::Machine
{
public:
    MadeUpMachine()
        : MadeUpMachine(std::make_unique<QTemporaryDir>())
    {
    }

    void write(const QString &path, const QByteArray &content)
    {
        const QString whole = root() + path;
        QDir().mkpath(QFileInfo(whole).path());
        QFile file(whole);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", qPrintable(whole));
    }
    void makeFolder(const QString &path) { QDir().mkpath(root() + path); }
    void link(const QString &path, const QString &target)
    {
        QDir().mkpath(QFileInfo(root() + path).path());
        QFile::remove(root() + path);
        QFile::link(target, root() + path);
    }
    void remove(const QString &path)
    {
        const QString whole = root() + path;
        if (!QFile::remove(whole))
            QDir(whole).removeRecursively();
    }
    // As the kernel shows a device, with or without a driver and a node.
    void addUsb(const QByteArray &vendor, const QString &device, const QString &driver,
                const QString &node)
    {
        using namespace Qt::StringLiterals;
        const QString folder = u"/sys/bus/usb/devices/"_s + device;
        write(folder + u"/idVendor"_s, vendor + '\n');
        write(folder + u"/idProduct"_s, "0001\n");
        write(folder + u"/bcdDevice"_s, "3010\n");
        const QString interfaceFolder = folder + u":1.0"_s;
        makeFolder(interfaceFolder);
        if (!driver.isEmpty())
            link(interfaceFolder + u"/driver"_s, u"/sys/bus/usb/drivers/"_s + driver);
        if (node.isEmpty())
            return;
        write(interfaceFolder + u"/usbmisc/"_s + node + u"/uevent"_s,
              "MAJOR=180\nMINOR=96\nDEVNAME=usb/" + node.toLatin1() + '\n');
        makeFolder(u"/sys/class/usbmisc/"_s + node);
        write(u"/dev/usb/"_s + node, {});
    }
    void unplug()
    {
        using namespace Qt::StringLiterals;
        remove(u"/sys/bus/usb/devices/1-2"_s);
        remove(u"/sys/bus/usb/devices/1-2:1.0"_s);
        remove(u"/sys/class/usbmisc/hiddev0"_s);
        remove(u"/dev/usb/hiddev0"_s);
    }

    QString kernelRelease() const override { return QStringLiteral("6.1.0-made-up"); }
    QString hostName() const override { return QStringLiteral("made-up-machine"); }
    bool mayOpen(const QString &node) const override { return !closed.contains(node); }
    DeviceUser lockHolder(const QString &node) const override { return holders.value(node); }
    QList<DeviceUser> openedBy(const QString &node) const override { return users.value(node); }
    NodeRights::User user() const override { return who; }
    QProcessEnvironment environment() const override { return variables; }

    QSet<QString> closed; // nodes that this user may not open
    QMap<QString, DeviceUser> holders;
    QMap<QString, QList<DeviceUser>> users;
    NodeRights::User who{QStringLiteral("somebody"), {1000}};
    QProcessEnvironment variables;

private:
    explicit MadeUpMachine(std::unique_ptr<QTemporaryDir> theDisk)
        : Machine(theDisk->path())
        , disk(std::move(theDisk))
    {
        using namespace Qt::StringLiterals;
        makeFolder(u"/sys/bus/usb/drivers/usbhid"_s);
        makeFolder(u"/sys/class/tty"_s);
        write(u"/boot/config-6.1.0-made-up"_s, "CONFIG_USB_HID=m\nCONFIG_USB_HIDDEV=y\n");
        write(u"/etc/group"_s, "root:x:0:\nplugdev:x:46:\ndialout:x:20:\n");
        addUsb("5156", u"1-2"_s, u"usbhid"_s, u"hiddev0"_s);
        variables.insert(u"DISPLAY"_s, u":0"_s);
        variables.insert(u"XDG_CURRENT_DESKTOP"_s, u"XFCE"_s);
    }

    std::unique_ptr<QTemporaryDir> disk;
};
