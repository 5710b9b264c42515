// SPDX-License-Identifier: GPL-3.0-or-later

#include "usbnodes.h"

#include <QFile>

#include <linux/hiddev.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <sys/ioctl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr quint16 NobodysVendorId = 0;
constexpr int HexBase = 16;

bool isSameNode(const char *a, const char *b)
{
    struct stat first
    {
    };
    struct stat second
    {
    };
    return ::stat(a, &first) == 0 && ::stat(b, &second) == 0 && S_ISCHR(first.st_mode) &&
           S_ISCHR(second.st_mode) && first.st_rdev == second.st_rdev;
}

} // namespace

std::vector<UsbNode> usbNodes(HID_AdpterPacket::HiddevIo &io)
{
    std::vector<UsbNode> nodes;
    const char *prefix = io.directoryExists("/dev/usb/hid") ? "/dev/usb/hid" : "/dev/usb/";
    for (int n = 0; n < HID_AdpterPacket::OP_HID_Adaptee::MaxNodes; ++n) {
        std::array<char, HID_AdpterPacket::OP_HID_Adaptee::NodeNameSize> path{};
        std::snprintf(path.data(), path.size(), "%shiddev%d", prefix, n);
        const std::optional<quint16> vendor = io.vendorOf(path.data());
        if (vendor && *vendor != VendorId)
            continue;
        UsbNode node{QString::fromLocal8Bit(path.data()), {}, 0};
        const int fd = io.open(path.data());
        if (fd < 0) {
            node.error = errno;
            if (vendor)
                nodes.push_back(node);
            continue;
        }
        hiddev_devinfo info{};
        if (io.ioctl(fd, HIDIOCGDEVINFO, &info) == 0 && quint16(info.vendor) == VendorId) {
            node.ids = {quint16(info.vendor), quint16(info.product), quint16(info.version)};
            nodes.push_back(node);
        }
        io.close(fd);
    }
    return nodes;
}

OneNode::OneNode(const QString &path)
    : wanted(QFile::encodeName(path))
{
}

std::optional<quint16> OneNode::vendorOf(const char *path)
{
    if (!isSameNode(path, wanted.constData()))
        return NobodysVendorId;
    return HiddevIo::vendorOf(path);
}

QString releaseText(quint32 release)
{
    return u"%1.%2.%3.%4"_s.arg(hex(release >> 12, 1), hex(release >> 8 & 0xF, 1),
                                hex(release >> 4 & 0xF, 1), hex(release & 0xF, 1));
}

QString hex(quint32 value, int digits)
{
    return QString::number(value, HexBase).toUpper().rightJustified(digits, u'0');
}

} // namespace ctl
