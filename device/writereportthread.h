// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "hid_adapter.h"
#include "stoppablethread.h"

#include <QChar>

#include <atomic>

// Sends one frame each time it is started, after a pause that the controller needs between frames.
// Asked to end during that pause, it sends nothing.
class writereportthread : public StoppableThread
{
    Q_OBJECT
public:
    explicit writereportthread(UCHAR *writeBuf);
    ~writereportthread() override;

    // Only while the thread does not run.
    void setHIDAdapter(HID_AdpterPacket::HID_Adapter *adapter, UCHAR reportId);
    void setWriteBuf(UCHAR *writeBuf);

    // What became of the frame that it was started for last. Final when the thread has ended.
    enum class Outcome { NotTried, Failed, Sent };
    Outcome outcome() const { return lastOutcome; }

signals:
    void WriteOver(QChar status); // 1: the send failed, 2: it succeeded

protected:
    void run() override;

private:
    HID_AdpterPacket::HID_Adapter *HID_Util = nullptr; // not owned
    UCHAR *WriteBuf; // FrameSize bytes, not owned; unchanged while the thread runs
    UCHAR reportID = 0;
    std::atomic<Outcome> lastOutcome = Outcome::NotTried;
};
