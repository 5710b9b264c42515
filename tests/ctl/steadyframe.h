#pragma once

#include "device/pacing.h"
#include "sim/sim_adapter.h"

// A simulated frame that is read at a steady pace: a real one's is three times slower, and without
// any there are a hundred reads between two commands.
class SteadyFrame final : public HID_AdpterPacket::HID_Adapter
{
public:
    explicit SteadyFrame(std::shared_ptr<sim::SimAdapter> theFrame)
        : frame(std::move(theFrame))
    {
    }

    bool DeviceNotification(void *window) override { return frame->DeviceNotification(window); }
    bool IsDevOpened() override { return frame->IsDevOpened(); }
    bool SendReport(UCHAR reportId, UCHAR *buf) override
    {
        return frame->SendReport(reportId, buf);
    }
    int ReadReport(UCHAR reportId, UCHAR *buf) override
    {
        const int result = frame->ReadReport(reportId, buf);
        Pacer().sleep(std::chrono::milliseconds(20));
        return result;
    }
    void CloseDevice() override { frame->CloseDevice(); }
    bool DoFindDev(QString collection, bool open) override
    {
        return frame->DoFindDev(collection, open);
    }
    bool IsDevDead() override { return frame->IsDevDead(); }
    bool GetVersion() override { return frame->GetVersion(); }

private:
    std::shared_ptr<sim::SimAdapter> frame;
};
