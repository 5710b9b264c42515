// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "hid_adapter.h"
#include "stoppablethread.h"

#include <QChar>

#include <deque>
#include <mutex>

// Polls the touch frame's input report for as long as a device is open.
//
// Every report read is delivered once, whole and in order, however busy the receiving thread is:
// when ReadOver is heard, the read buffer holds that report. ReadOver comes on the thread that made
// this object, from its event loop. A receiver may run an event loop of its own: the next report
// comes when all have seen this one. Until then reports wait in a bounded queue (see MaxWaiting).
class ReadReportThread : public StoppableThread
{
    Q_OBJECT
public:
    // More than a minute of reports; what comes on top pushes the oldest out.
    static constexpr size_t MaxWaiting = 1024;

    explicit ReadReportThread(UCHAR *readBuf);
    ~ReadReportThread() override;

    // Only while the thread does not run.
    void setHIDAdapter(HID_AdpterPacket::HID_Adapter *adapter, UCHAR reportId);
    void setReadBuf(UCHAR *readBuf);

    // Forgets what waits: the device it came from is gone.
    void discardWaiting();
    // How many reports the queue had no room for since the start of the program.
    quint64 droppedFrames() const;

signals:
    void ReadOver(QChar status); // 1: a cycle finished

    // To itself, queued.
    void reportWaits(QPrivateSignal);

protected:
    void run() override;

private:
    void enqueue(const Frame &frame);
    bool takeFrame();
    void deliver();

    HID_AdpterPacket::HID_Adapter *HID_Util = nullptr; // not owned
    UCHAR *ReadBuf; // FrameSize bytes, not owned, receiver's thread
    UCHAR reportID = 0;
    bool delivering = false;        // receiver's thread
    mutable std::mutex waitingLock; // protects the three below
    std::deque<Frame> waiting;
    quint64 dropped = 0;
    bool dropping = false; // the present overflow has been reported
};
