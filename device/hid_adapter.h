// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "devicelock.h"
#include "struct.h"

#include <QString>

namespace HID_AdpterPacket {

// A touch frame's node that was found but could not be opened.
struct NodeProblem
{
    QString node;         // path; empty when there is no problem
    int error = 0;        // errno of the failed open; EBUSY: somebody else uses the frame
    DeviceUser user = {}; // who that is

    bool operator==(const NodeProblem &) const = default;
};

// One touch frame, however it is attached. The main thread finds, opens and closes it; a reader
// and a writer thread may call ReadReport and SendReport at the same time meanwhile.
class HID_Adapter
{
public:
    virtual bool DeviceNotification(void *window) = 0;
    virtual bool IsDevOpened() = 0;
    // Sends bytes 1 to 63 of a 64-byte buffer. False after a successful send, true after a failed
    // one.
    virtual bool SendReport(UCHAR reportId, UCHAR *buf) = 0;
    // Fills a 64-byte buffer; byte 0 becomes the report id. Takes 64 ms. Negative when it failed.
    virtual int ReadReport(UCHAR reportId, UCHAR *buf) = 0;
    virtual void CloseDevice() = 0;
    // Looks for a device, and opens it when asked. True when one was found.
    virtual bool DoFindDev(QString collection, bool open) = 0;
    // Whether what was opened is dead: unplugged, even if the device is back by now.
    virtual bool IsDevDead() { return false; }
    // Fills the USB fields of hidver. False after success.
    virtual bool GetVersion() = 0;
    // What kept the last search from opening a device that is there.
    virtual NodeProblem LastProblem() const { return {}; }
    // The path of the node found last; empty where there is no such thing.
    virtual QString Node() const { return {}; }

protected:
    HID_Adapter() = default;
    HID_Adapter(const HID_Adapter &) = default;
    HID_Adapter &operator=(const HID_Adapter &) = default;
    ~HID_Adapter() = default;
};

} // namespace HID_AdpterPacket
