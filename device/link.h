// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "portsettings.h"
#include "traffic.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <chrono>
#include <deque>
#include <memory>
#include <optional>

class QTimer;
class SerialLink;
class UsbLink;
namespace HID_AdpterPacket {
class HID_Adapter;
}

// The link to the one touch frame, by USB or over a serial port, whichever carries frames now.
//
// A frame on USB is linked whenever it is plugged in, and takes over from an open serial port. The
// port stays open then, and is closed when that frame goes. Programs and windows hold this object
// and hear its signals. It needs an event loop; everything runs on its thread.
class Link : public QObject
{
    Q_OBJECT
public:
    enum Kind {
        UsbConnected = 1,
        NotConnected = 2,
        SerialOpen = 3,
        SerialClosed = 4,
        SerialFailed = 5,
    };
    // How a link ends.
    enum class End {
        DeviceGone, // nothing can be sent any more
        Replaced,   // by a frame on the other kind of link, or on another port
        Closed,     // because somebody said so
    };
    struct State
    {
        Kind kind = NotConnected;
        QString port;    // node or serial port that carries frames; empty when none does
        QString problem; // what keeps a frame from being linked, or a port from working as asked

        bool operator==(const State &) const = default;
    };

    // Without an adapter of the caller's, looks for frames behind the kernel's hiddev nodes.
    explicit Link(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter = nullptr,
                  QObject *parent = nullptr);
    ~Link() override;

    // Looks for a frame on USB now and twice a second from now on.
    void start();
    // Ends the link in good order: what was begun is finished and sent. Does not start again.
    void end();

    State state() const;
    Kind kind() const { return connect_sta; }
    bool isLinked() const { return connect_sta == UsbConnected || connect_sta == SerialOpen; }

    // Sends a copy of FrameSize bytes; without a link it is dropped.
    void send(const UCHAR *frame);

    // Ends the link when the frame is gone, by what the kernel says now; by USB in any case when
    // forced.
    void lookForRemoval(bool force);

    // USB

    // Looks for a frame, and links it; true when one became linked just now.
    bool lookForDevice();
    // Fills the USB fields of hidver from the frame that is linked; true when it is one that
    // answers the firmware query. The fields of that answer are cleared if not.
    bool readVersion();
    // Whether the frame that is linked by USB has not told yet what readVersion() asks for.
    bool lacksVersion() const;
    // Takes the firmware fields of hidver from a report, if it is such an answer by USB; true when
    // that changed them.
    bool takeVersion(const UCHAR *report);

    // Serial line

    // Opens a port and brings the frame there to the rate of the settings. The port is tried first:
    // a link by USB ends only when it is open. False when that fails, see serialProblem(), and when
    // a port is open already; what was linked goes on then. A port that does not take all settings
    // is open. One that another program uses is opened when it is free, unless somebody asks for
    // something else or a frame on USB is linked first.
    bool openSerial(const QString &portName, const PortSettings &settings);
    // Closes the port; what was linked is linked no more.
    void closeSerial();
    // Closes the port, under a frame on USB too, whose link goes on.
    void closePort();
    // Prefers USB: closes the port and looks for a frame there.
    void useUsb();
    // The port that is open, perhaps beneath a link by USB; empty for none.
    QString openPort() const;
    QString serialProblem() const;
    // What keeps a frame on USB from being linked at this moment.
    QString usbProblem() const;
    // Whether it, or the port that was asked for, is with another program.
    bool isInUse() const;

    UsbLink &usb() { return *usbLink; }
    SerialLink &serial() { return *serialLink; }

public slots:
    // What a watcher of the kernel's messages has heard: a frame was plugged in, perhaps without
    // its node yet; one was pulled out; messages were lost.
    void deviceAdded();
    void deviceRemoved();
    void eventsLost();

    // Takes in what waits in the serial port.
    void receiveSerial();

signals:
    // A frame has come, FrameSize bytes; valid during the call only. When a receiver runs an event
    // loop, the next one comes when all have seen this one.
    void received(UCHAR *frame);
    void stateChanged(const Link::State &state);
    // Every frame both ways, for who watches the line: one that comes before it is received, one
    // that is sent when it is known what became of it, which by USB is some 50 ms later.
    void traffic(const Traffic &traffic);
    // A frame on USB is linked.
    void usbConnected();
    // The machine has slept with a frame linked by USB, which may have been without power then and
    // not know any more what it was told.
    void wokeUp();
    // This link, of kind(), is about to end: finish what you began. What is sent now still leaves,
    // unless the device is gone.
    void aboutToEnd(Link::End how);
    // Nothing that the device said is true of the next one.
    void ended();

private:
    void setKind(Kind kind);
    void tellState();
    void finishLink(End how);
    void check();
    void lookForSleep();
    void retrySearch();
    void noteProblem();
    void handOut(UCHAR *frame);
    void catchUp();
    void onUsbReport(UCHAR *report);
    void onSerialLost();

    Kind connect_sta = NotConnected;
    UsbLink *usbLink;       // child
    SerialLink *serialLink; // child
    QTimer *timer;          // child; check()s twice a second
    QTimer *retryTimer;     // child; looks again soon after a plug event
    int retriesLeft = 0;
    std::chrono::nanoseconds slept{}; // by the machine, until the last look

    bool deviceGone = false;    // what is sent is dropped: the link is ending
    UCHAR *handedOut = nullptr; // a receiver is at work on it, perhaps in an event loop of its own
    bool fromSerial = false;    // it came over the serial line
    std::deque<Frame> heldBack; // reports by USB that came meanwhile

    struct PortWish
    {
        QString name;
        PortSettings settings;
    };
    std::optional<PortWish> portWish; // the port that another program uses

    QString seenProblem;      // with USB, at the last search
    QString announcedProblem; // the one that has lasted
    QElapsedTimer problemSince;
    State told; // the last stateChanged()
};
