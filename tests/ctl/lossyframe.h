#pragma once

#include "sim/sim_adapter.h"

#include <QByteArray>

// A simulated frame that never gets commands that begin with certain bytes, and believes to be
// well.
class LossyFrame final : public HID_AdpterPacket::HID_Adapter
{
public:
    LossyFrame(std::shared_ptr<sim::SimAdapter> theFrame, QByteArray theLost)
        : frame(std::move(theFrame))
        , lost(std::move(theLost))
    {
    }

    bool DeviceNotification(void *window) override { return frame->DeviceNotification(window); }
    bool IsDevOpened() override { return frame->IsDevOpened(); }
    bool SendReport(UCHAR reportId, UCHAR *buf) override
    {
        const QByteArray bytes(reinterpret_cast<const char *>(buf + 1), lost.size());
        return bytes != lost && frame->SendReport(reportId, buf);
    }
    int ReadReport(UCHAR reportId, UCHAR *buf) override { return frame->ReadReport(reportId, buf); }
    void CloseDevice() override { frame->CloseDevice(); }
    bool DoFindDev(QString collection, bool open) override
    {
        return frame->DoFindDev(collection, open);
    }
    bool IsDevDead() override { return frame->IsDevDead(); }
    bool GetVersion() override { return frame->GetVersion(); }

private:
    std::shared_ptr<sim::SimAdapter> frame;
    const QByteArray lost;
};
