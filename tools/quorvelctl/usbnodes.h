// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/linux_hid_adapter.h"

#include <QString>

#include <optional>
#include <vector>

namespace ctl {

// A touch frame behind one of the kernel's hiddev nodes, as it says without being asked.
struct UsbNode
{
    struct Ids
    {
        quint16 vendor = 0;
        quint16 product = 0;
        quint16 release = 0; // binary coded decimal
    };

    QString path;
    std::optional<Ids> ids; // nothing when it cannot be opened
    int error = 0;          // errno of that
};

// All that there are. Nodes that sysfs gives to another maker are left alone.
std::vector<UsbNode> usbNodes(HID_AdpterPacket::HiddevIo &io);

// The same system with one node only, under any of its names.
class OneNode final : public HID_AdpterPacket::HiddevIo
{
public:
    explicit OneNode(const QString &path);
    std::optional<quint16> vendorOf(const char *path) override;

private:
    const QByteArray wanted;
};

// "3.0.1.0" of 0x3010.
QString releaseText(quint32 release);
// So many digits at least, upper case.
QString hex(quint32 value, int digits);

} // namespace ctl
