// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "sim/sim_adapter.h"

// A simulated frame whose transfers a test alters: everything else is passed on.
class WrappedFrame : public HID_AdpterPacket::HID_Adapter
{
public:
    explicit WrappedFrame(std::shared_ptr<sim::SimAdapter> theFrame)
        : frame(std::move(theFrame))
    {
    }
    virtual ~WrappedFrame() = default;

    bool DeviceNotification(void *window) override { return frame->DeviceNotification(window); }
    bool IsDevOpened() override { return frame->IsDevOpened(); }
    bool SendReport(UCHAR reportId, UCHAR *buf) override
    {
        return frame->SendReport(reportId, buf);
    }
    int ReadReport(UCHAR reportId, UCHAR *buf) override { return frame->ReadReport(reportId, buf); }
    void CloseDevice() override { frame->CloseDevice(); }
    bool DoFindDev(QString collection, bool open) override
    {
        return frame->DoFindDev(collection, open);
    }
    bool IsDevDead() override { return frame->IsDevDead(); }
    bool GetVersion() override { return frame->GetVersion(); }

protected:
    const std::shared_ptr<sim::SimAdapter> frame;
};
