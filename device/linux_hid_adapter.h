// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "hid_adapter.h"

#include <array>
#include <optional>

namespace HID_AdpterPacket {

// What finding a hiddev node and talking to it asks of the system; tests stand in for it here.
// Failures leave their reason in errno.
class HiddevIo
{
public:
    HiddevIo() = default;
    HiddevIo(const HiddevIo &) = delete;
    HiddevIo &operator=(const HiddevIo &) = delete;
    virtual ~HiddevIo() = default;

    virtual bool directoryExists(const char *path);
    virtual int open(const char *path); // for reading and writing; negative when it failed
    virtual void close(int fd);
    virtual int ioctl(int fd, unsigned long request, void *argument); // negative when it failed
    // The USB vendor id that sysfs gives for a node, where it has one.
    virtual std::optional<quint16> vendorOf(const char *path);
    // Takes the lock of an open node; false when somebody else holds it.
    virtual bool lock(int fd);
    virtual DeviceUser holderOf(const char *path);

    static HiddevIo &system();
};

// A touch frame behind one of the kernel's hiddev nodes, one usage value for each frame byte.
//
// Nodes that sysfs gives to another maker are left alone, since opening one powers its device up.
// An open device is locked: a node whose lock somebody else holds is not opened.
class OP_HID_Adaptee
{
public:
    static constexpr int MaxNodes = 16; // hiddev has no more minors
    static constexpr int NodeNameSize = 100;

    explicit OP_HID_Adaptee(HiddevIo &hiddev = HiddevIo::system());
    OP_HID_Adaptee(const OP_HID_Adaptee &) = delete;
    OP_HID_Adaptee &operator=(const OP_HID_Adaptee &) = delete;
    ~OP_HID_Adaptee();

    bool OP_DeviceNotification(void *window);
    bool OP_SendReport(UCHAR reportId, UCHAR *buf);
    int OP_ReadReport(UCHAR reportId, UCHAR *buf);
    void OP_CloseDevice();
    void OpenDevice(int index); // of hiddev_name; notes why it did not
    bool OP_DoFindDev(const QString &collection, bool open);
    bool OP_IsDevDead();
    bool OP_GetVersion();

protected:
    bool DevOpenedFlag = false;                                         // main thread only
    NodeProblem problem;                                                // main thread only
    std::array<std::array<char, NodeNameSize>, MaxNodes> hiddev_name{}; // the nodes last found

private:
    bool isTouchFrame(const char *node);

    HiddevIo &io; // outlives this
    // The open node, or -1: after a close the number may belong to any other socket or file.
    // Changed only while neither thread uses the device.
    int fd = -1;
};

class OP_HID_Adapter final : public HID_Adapter, private OP_HID_Adaptee
{
public:
    explicit OP_HID_Adapter(HiddevIo &hiddev = HiddevIo::system());

    bool DeviceNotification(void *window) override;
    bool IsDevOpened() override;
    bool SendReport(UCHAR reportId, UCHAR *buf) override;
    int ReadReport(UCHAR reportId, UCHAR *buf) override;
    void CloseDevice() override;
    bool DoFindDev(QString collection, bool open) override;
    bool IsDevDead() override;
    bool GetVersion() override;
    NodeProblem LastProblem() const override;
    QString Node() const override;
};

// 1 when flag is not 0 and the pair is one of the controller's 80 product ids, else 0.
int CheckIds(unsigned long vendorId, unsigned long productId, unsigned long flag);

} // namespace HID_AdpterPacket
