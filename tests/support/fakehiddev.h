// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/linux_hid_adapter.h"

#include <QList>
#include <QStringList>

#include <linux/hiddev.h>
#include <sys/ioctl.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <optional>
#include <string>

// A /dev/usb in memory: nodes with a vendor, a release and one report in each direction. Records
// every call.
class FakeHiddev final : public HID_AdpterPacket::HiddevIo
{
public:
    struct Node
    {
        quint16 vendor = 0x5156;
        quint16 product = 0x0001;
        quint16 version = 0x3010;
        int openError = 0;      // errno of an open that fails
        int laterOpenError = 0; // the same, of each but the first
        bool inSysfs = false;   // sysfs tells the vendor
        int usages = 63;
        std::optional<DeviceUser> heldBy{}; // another program has its lock
    };

    std::map<std::string, Node> nodes;
    bool hidDirectory = false;
    std::map<unsigned long, int> failing; // request number to errno

    std::array<int, 64> inputReport{};
    std::array<int, 64> usagesSet{};
    bool reportSent = false;
    bool stringsHaveNoEnd = false;

    QStringList opened; // paths, in order
    QList<int> closed;  // descriptors, in order
    struct Call
    {
        unsigned long request;
        unsigned reportType;
        unsigned reportId;
        int usageIndex; // -1 where there is none
        int value;
        unsigned usageCode;
    };
    QList<Call> calls;

    bool directoryExists(const char *path) override
    {
        return hidDirectory && std::strcmp(path, "/dev/usb/hid") == 0;
    }

    int open(const char *path) override
    {
        opened.append(QString::fromLatin1(path));
        const auto found = nodes.find(path);
        if (found == nodes.end()) {
            errno = ENOENT;
            return -1;
        }
        const bool isLater = opened.count(opened.last()) > 1;
        if (const int error = isLater && found->second.laterOpenError ? found->second.laterOpenError
                                                                      : found->second.openError) {
            errno = error;
            return -1;
        }
        const int descriptor = nextDescriptor;
        descriptors[descriptor] = path;
        nextDescriptor += givesNumbersAgain ? 0 : 1;
        return descriptor;
    }

    void close(int fd) override
    {
        closed.append(fd);
        descriptors.erase(fd);
    }

    int ioctl(int fd, unsigned long request, void *argument) override
    {
        calls.append({request, 0, 0, -1, 0, 0});
        const auto open = descriptors.find(fd);
        if (open == descriptors.end()) {
            errno = EBADF;
            return -1;
        }
        if (const auto fault = failing.find(request); fault != failing.end()) {
            errno = fault->second;
            record(request, argument);
            return -1;
        }
        record(request, argument);
        const Node &node = nodes[open->second];
        switch (request) {
        case HIDIOCGDEVINFO: {
            auto *info = static_cast<hiddev_devinfo *>(argument);
            info->vendor = qint16(node.vendor);
            info->product = qint16(node.product);
            info->version = qint16(node.version);
            info->busnum = 3;
            info->devnum = 7;
            info->ifnum = 0;
            info->num_applications = 1;
            return 0;
        }
        case HIDIOCGSTRING: {
            auto *text = static_cast<hiddev_string_descriptor *>(argument);
            if (stringsHaveNoEnd) {
                std::memset(text->value, 'x', sizeof text->value);
                return int(sizeof text->value);
            }
            std::strcpy(text->value, text->index == 1   ? "Maker"
                                     : text->index == 2 ? "Frame"
                                                        : "another string");
            return 5;
        }
        case HIDIOCSUSAGE: {
            const auto *usage = static_cast<hiddev_usage_ref *>(argument);
            usagesSet[usage->usage_index] = usage->value;
            return 0;
        }
        case HIDIOCGUSAGE: {
            auto *usage = static_cast<hiddev_usage_ref *>(argument);
            if (int(usage->usage_index) >= node.usages) {
                errno = EINVAL;
                return -1;
            }
            usage->value = inputReport[usage->usage_index];
            return 0;
        }
        case HIDIOCSREPORT:
            reportSent = true;
            return 0;
        default:
            return 0;
        }
    }

    std::optional<quint16> vendorOf(const char *path) override
    {
        const auto found = nodes.find(path);
        if (found == nodes.end() || !found->second.inSysfs)
            return std::nullopt;
        return found->second.vendor;
    }

    bool lock(int fd) override
    {
        const auto open = descriptors.find(fd);
        return open == descriptors.end() || !nodes[open->second].heldBy;
    }

    DeviceUser holderOf(const char *path) override
    {
        return nodes[path].heldBy.value_or(DeviceUser());
    }

    int firstDescriptor() const { return FirstDescriptor; }
    bool isOpen(int fd) const { return descriptors.count(fd) != 0; }
    size_t openDescriptors() const { return descriptors.size(); }

    int nextDescriptor = FirstDescriptor;
    bool givesNumbersAgain = false; // that of the probe is the device's too, as the system has it

private:
    static constexpr int FirstDescriptor = 100;

    void record(unsigned long request, const void *argument)
    {
        Call &call = calls.last();
        if (request == HIDIOCGUCODE || request == HIDIOCSUSAGE || request == HIDIOCGUSAGE) {
            const auto *usage = static_cast<const hiddev_usage_ref *>(argument);
            call.reportType = usage->report_type;
            call.reportId = usage->report_id;
            call.usageIndex = int(usage->usage_index);
            call.value = usage->value;
            call.usageCode = usage->usage_code;
        } else if (request == HIDIOCSREPORT || request == HIDIOCGREPORT ||
                   request == HIDIOCGREPORTINFO) {
            const auto *info = static_cast<const hiddev_report_info *>(argument);
            call.reportType = info->report_type;
            call.reportId = info->report_id;
        }
    }

    std::map<int, std::string> descriptors;
};
