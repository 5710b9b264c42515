// SPDX-License-Identifier: GPL-3.0-or-later

#include "writereportthread.h"

#include "frame.h"

using namespace std::chrono_literals;

namespace {
constexpr auto PauseBeforeSend = 50ms;
constexpr auto PauseAfterFailure = 2ms;
constexpr QChar SendFailed(1);
constexpr QChar SendSucceeded(2);
} // namespace

writereportthread::writereportthread(UCHAR *writeBuf)
    : WriteBuf(writeBuf)
{
}

writereportthread::~writereportthread()
{
    finish();
}

void writereportthread::setHIDAdapter(HID_AdpterPacket::HID_Adapter *adapter, UCHAR reportId)
{
    HID_Util = adapter;
    reportID = reportId;
}

void writereportthread::setWriteBuf(UCHAR *writeBuf)
{
    WriteBuf = writeBuf;
}

void writereportthread::run()
{
    Frame frame = command::frameAt(WriteBuf);
    lastOutcome = Outcome::NotTried;
    if (!pause(PauseBeforeSend))
        return;
    lastOutcome = Outcome::Failed;
    const bool failed = HID_Util->SendReport(reportID, frame.data());
    if (failed)
        pause(PauseAfterFailure);
    else
        lastOutcome = Outcome::Sent;
    // Of a device that is being closed nobody wants to know.
    if (!stopRequested())
        emit WriteOver(failed ? SendFailed : SendSucceeded);
}
