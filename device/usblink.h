// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "hid_adapter.h"
#include "traffic.h"

#include <QDeadlineTimer>
#include <QObject>

#include <chrono>
#include <deque>
#include <memory>

class QTimer;
class ReadReportThread;
class writereportthread;

// Frames over USB: an adapter that finds the touch frame, a thread that reads it, one that sends to
// it, and an outbox for what a frame that hangs does not take.
//
// Everything here runs on one thread; what the two threads share with it is said at the members.
class UsbLink : public QObject
{
    Q_OBJECT
public:
    // How many frames wait behind one that the device takes long to accept.
    static constexpr size_t MaxOutbox = 64;
    // How long senders wait for frames before their own: one send and some more, all together that
    // send before the event loop has had time for whatever else has come. That waits for less than
    // a tenth of a second then.
    static constexpr auto TurnPatience = std::chrono::milliseconds(65);
    // How long the end of a link waits for each frame. Many times what a send takes.
    static constexpr auto SendPatience = std::chrono::milliseconds(500);

    explicit UsbLink(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter,
                     QObject *parent = nullptr);
    ~UsbLink() override;

    // Names the window to the adapter, for systems that send messages of devices to windows.
    void registerForNotification(void *window);

    // Looks for a touch frame and starts to read it; false when none is there, or none that can be
    // opened and read (see problem()), or when one is open already.
    bool open();
    bool isOpen() const { return opened; }
    // Whether a touch frame is there and, if one is open, it has been there all the time.
    bool isPlugged();
    // Ends both threads and closes the device. Nothing that it said is delivered any more, and what
    // has not left yet is dropped.
    void close();

    // Sends a copy of FrameSize bytes, 50 ms later, one after the other. When the outbox is full it
    // is dropped, with a warning in the log.
    void send(const UCHAR *frame);
    // Waits until all that was sent is with the device; false when it takes nothing for longer than
    // SendPatience, or cannot be handed it.
    bool flush();

    // Fills the USB fields of hidver.
    void readVersion();
    // The node of the open device, where it has one.
    QString node() const;
    // What keeps a touch frame that is there from being opened, and what helps; empty when nothing
    // does. Of the last open().
    QString problem() const;
    // Whether the last open() found the frame with another program.
    bool isInUse() const;

signals:
    // A report of the device, FrameSize bytes; valid during the call only.
    void received(UCHAR *report);
    // Each report before it is received, and each frame of send() once it is known what became of
    // it.
    void traffic(const Traffic &traffic);

public slots:
    void OnRecv03(QChar status);    // of ReadReportThread::ReadOver
    void OnWriteOver(QChar status); // of writereportthread::WriteOver

private:
    bool waitForWriter();
    bool sendNext();
    void sendAgain();
    void lookAtWriter();
    void tellSent();
    void tell(Traffic::Direction direction, Traffic::Result result, const Frame &frame);

    std::shared_ptr<HID_AdpterPacket::HID_Adapter> HID_Util03;
    bool opened = false;
    bool lacksThread = false; // the last open() found no room for one
    Frame RecvBuf03{};        // written by the reader on this thread, never while it is delivered
    Frame SendBuf03{};        // read by the writer, changed while it does not run
    bool underWay = false;    // what became of SendBuf03 has not been told
    std::deque<Frame> outbox; // not handed to the writer yet
    QDeadlineTimer turn;      // until when senders wait while turnEnd runs
    QTimer *turnEnd;          // child

    // The threads use the adapter and the buffers, so they stand behind these and go first.
    std::unique_ptr<ReadReportThread> readThread03;
    std::unique_ptr<writereportthread> writeThread03;
};
