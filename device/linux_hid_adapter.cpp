// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux_hid_adapter.h"

#include "advice.h"
#include "malvoutil.h"
#include "pacing.h"

#include <QByteArray>
#include <QFile>

#include <linux/hiddev.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace HID_AdpterPacket {

namespace {

constexpr auto UsagePause = 1ms;
constexpr auto SendPause = 1ms;
// Usage 1 of the vendor page that the frame declares.
constexpr unsigned VendorUsage = 0xFF000001;
constexpr unsigned ManufacturerString = 1;
constexpr unsigned ProductString = 2;

constexpr unsigned FirstProductId = 0x0001;
constexpr unsigned ProductIds = 80;

constexpr auto knownIds = [] {
    std::array<quint32, ProductIds> ids{};
    for (unsigned i = 0; i < ProductIds; ++i)
        ids[i] = quint32(VendorId) << 16 | (FirstProductId + i);
    return ids;
}();

hiddev_usage_ref firstUsage(unsigned reportType, UCHAR reportId)
{
    hiddev_usage_ref usage{};
    usage.report_type = reportType;
    usage.report_id = reportId;
    return usage;
}

hiddev_report_info reportInfo(unsigned reportType, UCHAR reportId)
{
    hiddev_report_info info{};
    info.report_type = reportType;
    info.report_id = reportId;
    return info;
}

} // namespace

bool HiddevIo::directoryExists(const char *path)
{
    DIR *directory = ::opendir(path);
    if (!directory)
        return false;
    ::closedir(directory);
    return true;
}

int HiddevIo::open(const char *path)
{
    return ::open(path, O_RDWR | O_CLOEXEC);
}

void HiddevIo::close(int fd)
{
    ::close(fd);
}

int HiddevIo::ioctl(int fd, unsigned long request, void *argument)
{
    return ::ioctl(fd, request, argument);
}

std::optional<quint16> HiddevIo::vendorOf(const char *path)
{
    struct stat node
    {
    };
    if (::stat(path, &node) != 0 || !S_ISCHR(node.st_mode))
        return std::nullopt;
    // The node's device is the USB interface; the ids stand at the USB device above it.
    QFile idVendor(QStringLiteral("/sys/dev/char/%1:%2/device/../idVendor")
                       .arg(major(node.st_rdev))
                       .arg(minor(node.st_rdev)));
    if (!idVendor.open(QIODevice::ReadOnly))
        return std::nullopt;
    bool isNumber = false;
    const quint16 vendor = idVendor.readAll().trimmed().toUShort(&isNumber, 16);
    return isNumber ? std::optional(vendor) : std::nullopt;
}

// A node without locks is used as it is.
bool HiddevIo::lock(int fd)
{
    return devicelock::take(fd) != devicelock::Outcome::Held;
}

DeviceUser HiddevIo::holderOf(const char *path)
{
    return devicelock::holder(QFile::decodeName(path));
}

HiddevIo &HiddevIo::system()
{
    static HiddevIo io;
    return io;
}

OP_HID_Adaptee::OP_HID_Adaptee(HiddevIo &hiddev)
    : io(hiddev)
{
}

OP_HID_Adaptee::~OP_HID_Adaptee()
{
    OP_CloseDevice();
}

bool OP_HID_Adaptee::OP_DeviceNotification(void *window)
{
    return window != nullptr;
}

bool OP_HID_Adaptee::OP_SendReport(UCHAR reportId, UCHAR *buf)
{
    hiddev_usage_ref usage = firstUsage(HID_REPORT_TYPE_OUTPUT, reportId);
    if (io.ioctl(fd, HIDIOCGUCODE, &usage) != 0) {
        perror("SendCommandFS: ioctl to get usage code for out report");
        return true;
    }
    if (buf) {
        for (int i = 1; i < FrameSize; ++i) {
            usage.usage_index = unsigned(i - 1);
            usage.value = buf[i];
            io.ioctl(fd, HIDIOCSUSAGE, &usage);
        }
    }
    hiddev_report_info info = reportInfo(HID_REPORT_TYPE_OUTPUT, reportId);
    io.ioctl(fd, HIDIOCGREPORTINFO, &info);
    if (io.ioctl(fd, HIDIOCSREPORT, &info) != 0) {
        perror("SendCommandFS: ioctl to send output report");
        return true;
    }
    Pacer().sleep(SendPause);
    return false;
}

int OP_HID_Adaptee::OP_ReadReport(UCHAR reportId, UCHAR *buf)
{
    hiddev_report_info info = reportInfo(HID_REPORT_TYPE_INPUT, reportId);
    io.ioctl(fd, HIDIOCGREPORT, &info);
    hiddev_usage_ref usage = firstUsage(HID_REPORT_TYPE_INPUT, reportId);
    usage.usage_code = VendorUsage;
    const int result = io.ioctl(fd, HIDIOCGUCODE, &usage);

    MALVOUTIL::Buf_util::CleanBuf(buf, FrameSize);
    Pacer pacer;
    for (int i = 0; i < FrameSize; ++i) {
        usage.usage_index = unsigned(i);
        io.ioctl(fd, HIDIOCGUSAGE, &usage);
        pacer.sleep(UsagePause);
        buf[i] = UCHAR(usage.value & 0xFF);
    }
    // The report id is not among the usages: it takes the place in front of them.
    std::copy_backward(buf, buf + FrameSize - 1, buf + FrameSize);
    buf[0] = reportId;
    return result;
}

void OP_HID_Adaptee::OP_CloseDevice()
{
    DevOpenedFlag = false;
    if (fd >= 0)
        io.close(fd);
    fd = -1;
}

void OP_HID_Adaptee::OpenDevice(int index)
{
    const char *node = hiddev_name[size_t(index)].data();
    const int opened = io.open(node);
    if (opened < 0) {
        const int error = errno;
        problem = {QString::fromLocal8Bit(node), error};
        OP_CloseDevice();
        return;
    }
    if (!io.lock(opened)) {
        problem = {QString::fromLocal8Bit(node), EBUSY, io.holderOf(node)};
        io.close(opened);
        OP_CloseDevice();
        return;
    }
    fd = opened;
    DevOpenedFlag = true;
}

// Whether a node is a touch frame; notes a problem with one that is but cannot be opened.
bool OP_HID_Adaptee::isTouchFrame(const char *node)
{
    const std::optional<quint16> vendor = io.vendorOf(node);
    if (vendor && *vendor != VendorId)
        return false;
    const int candidate = io.open(node);
    if (candidate < 0) {
        const int error = errno;
        // Without a descriptor its vendor cannot be read either.
        if (vendor || Advice::isForRoom(error))
            problem = {QString::fromLocal8Bit(node), error};
        return false;
    }
    bool matches = false;
    // Descriptor 0 stands in for a closed standard input and is no device.
    if (candidate > 0) {
        hiddev_devinfo info{};
        matches =
            io.ioctl(candidate, HIDIOCGDEVINFO, &info) == 0 && quint16(info.vendor) == VendorId;
    }
    io.close(candidate);
    return matches;
}

bool OP_HID_Adaptee::OP_DoFindDev(const QString &collection, bool open)
{
    if (DevOpenedFlag && open)
        OP_CloseDevice();
    problem = {};
    hiddev_name = {};

    // The two names join without a slash: such systems call their nodes hidhiddev0 and so on.
    const char *hidDirectory = "/dev/usb/hid";
    const char *prefix = io.directoryExists(hidDirectory) ? hidDirectory : "/dev/usb/";
    for (int n = 0; n < MaxNodes; ++n) {
        std::array<char, NodeNameSize> node{};
        std::snprintf(node.data(), node.size(), "%shiddev%d", prefix, n);
        if (!isTouchFrame(node.data()))
            continue;
        problem = {};
        hiddev_name[0] = node;
        if (open)
            OpenDevice(0);
        // Who waits for another program's frame looks for it twice a second.
        if (problem.error != EBUSY)
            std::printf("dir_str: %s\thiddev: %s\tcol: %s\n", prefix, node.data(),
                        collection.toLatin1().constData());
        return true;
    }
    return false;
}

bool OP_HID_Adaptee::OP_IsDevDead()
{
    hiddev_devinfo info{};
    return fd >= 0 && io.ioctl(fd, HIDIOCGDEVINFO, &info) != 0 && errno == ENODEV;
}

bool OP_HID_Adaptee::OP_GetVersion()
{
    hidver.VendorID = hidver.ProductID = hidver.VersionNumber = 0;
    hiddev_devinfo info{};
    if (io.ioctl(fd, HIDIOCGDEVINFO, &info) != 0) {
        perror("SendCommandFS: ioctl to get device info for out report");
        return true;
    }
    hidver.VendorID = quint16(info.vendor);
    hidver.ProductID = quint16(info.product);
    hidver.VersionNumber = quint16(info.version);
    std::printf("VID: 0x%04hX  PID: 0x%04hX  version: 0x%04hX\n", quint16(info.vendor),
                quint16(info.product), quint16(info.version));
    std::printf("Applications: %u\n", info.num_applications);
    std::printf("Bus: %u Devnum: %u Ifnum: %u\n", info.busnum, info.devnum, info.ifnum);

    hiddev_string_descriptor manufacturer{};
    manufacturer.index = ManufacturerString;
    io.ioctl(fd, HIDIOCGSTRING, &manufacturer);
    hiddev_string_descriptor product{};
    product.index = ProductString;
    io.ioctl(fd, HIDIOCGSTRING, &product);
    manufacturer.value[sizeof manufacturer.value - 1] = '\0';
    product.value[sizeof product.value - 1] = '\0';
    std::printf("Path: %s\n\tManufacturer: %s\n\tProduct: %s\n", hiddev_name[0].data(),
                manufacturer.value, product.value);
    return false;
}

OP_HID_Adapter::OP_HID_Adapter(HiddevIo &hiddev)
    : OP_HID_Adaptee(hiddev)
{
}

bool OP_HID_Adapter::DeviceNotification(void *window)
{
    return OP_DeviceNotification(window);
}

bool OP_HID_Adapter::IsDevOpened()
{
    return DevOpenedFlag;
}

bool OP_HID_Adapter::SendReport(UCHAR reportId, UCHAR *buf)
{
    return OP_SendReport(reportId, buf);
}

int OP_HID_Adapter::ReadReport(UCHAR reportId, UCHAR *buf)
{
    return OP_ReadReport(reportId, buf);
}

void OP_HID_Adapter::CloseDevice()
{
    OP_CloseDevice();
}

bool OP_HID_Adapter::DoFindDev(QString collection, bool open)
{
    return OP_DoFindDev(collection, open);
}

bool OP_HID_Adapter::IsDevDead()
{
    return OP_IsDevDead();
}

bool OP_HID_Adapter::GetVersion()
{
    return OP_GetVersion();
}

NodeProblem OP_HID_Adapter::LastProblem() const
{
    return problem;
}

QString OP_HID_Adapter::Node() const
{
    return QString::fromLocal8Bit(hiddev_name[0].data());
}

int CheckIds(unsigned long vendorId, unsigned long productId, unsigned long flag)
{
    if (flag == 0 || vendorId > 0xFFFF || productId > 0xFFFF)
        return 0;
    const auto pair = quint32(vendorId << 16 | productId);
    return std::find(knownIds.begin(), knownIds.end(), pair) != knownIds.end() ? 1 : 0;
}

} // namespace HID_AdpterPacket
