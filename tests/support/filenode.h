// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/linux_hid_adapter.h"

#include <QByteArray>

#include <linux/hiddev.h>
#include <sys/ioctl.h>

#include <cstring>

// A single node, /dev/usb/hiddev0, that is a file in truth: it can be opened and locked by several
// programs, and says that it is a touch frame.
class FileNode final : public HID_AdpterPacket::HiddevIo
{
public:
    explicit FileNode(QByteArray thePath)
        : path(std::move(thePath))
    {
    }

    bool directoryExists(const char *) override { return false; }
    int open(const char *node) override { return HiddevIo::open(fileOf(node)); }
    int ioctl(int, unsigned long request, void *argument) override
    {
        if (request == HIDIOCGDEVINFO)
            static_cast<hiddev_devinfo *>(argument)->vendor = 0x5156;
        return 0;
    }
    std::optional<quint16> vendorOf(const char *) override { return std::nullopt; }
    DeviceUser holderOf(const char *node) override { return HiddevIo::holderOf(fileOf(node)); }

private:
    const char *fileOf(const char *node) const
    {
        return std::strcmp(node, "/dev/usb/hiddev0") == 0 ? path.constData() : "/nowhere";
    }

    QByteArray path;
};
