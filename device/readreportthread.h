#pragma once

#include "hid_adapter.h"
#include "stoppablethread.h"

#include <QChar>

#include <deque>
#include <mutex>

// Polls the touch frame's input report for as long as a device is open.
//
// Every report read is handed over once, whole and in order, however busy the receiving thread
// is: reports wait in a bounded queue (see MaxWaiting) until takeFrame().
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

    // Moves the oldest waiting report into the read buffer; false when none waits.
    bool takeFrame();
    // Forgets what waits: the device it came from is gone.
    void discardWaiting();
    // How many reports the queue had no room for since the start of the program.
    quint64 droppedFrames() const;

signals:
    void ReadOver(QChar status); // 1: a cycle finished

protected:
    void run() override;

private:
    void enqueue(const Frame &frame);

    HID_AdpterPacket::HID_Adapter *HID_Util = nullptr; // not owned
    UCHAR *ReadBuf; // FrameSize bytes, not owned, receiver's thread
    UCHAR reportID = 0;

    mutable std::mutex waitingLock; // protects the three below
    std::deque<Frame> waiting;
    quint64 dropped = 0;
    bool dropping = false; // the present overflow has been reported
};
