// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/filedescriptor.h"
#include "device/framelog.h"
#include "faultyframe.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <optional>

namespace sim {

// The simulated frame as a USB device, for the time of one plug: answers the URB messages that a
// virtual host controller sends over a stream socket.
//
// It has one HID interface with one report of 63 bytes each way, moved by GET_REPORT and
// SET_REPORT on endpoint 0; its interrupt endpoint never speaks. Runs in its thread's event loop.
class UsbDevice : public QObject
{
    Q_OBJECT
public:
    // What the host does not need in any request; more means that it speaks another language.
    static constexpr int MaxTransfer = 64 * 1024;

    // The frame and its log outlive this.
    UsbDevice(FaultyFrame &frame, FrameLog &log, FileDescriptor socket, QObject *parent = nullptr);

    // What the host sees before its hub notices that the cable came out: transfers fail. Returns
    // within half a second, at a moment when the host has just heard of that if it transfers at
    // all; says nothing more from then on.
    void hangUp();

signals:
    void logged(const QStringList &lines);
    // A fault of the plan pulled the plug; every transfer fails from now on.
    void pulled();
    // The host's end closed, or sent what is no URB message.
    void lost(const QString &reason);

private:
    struct Urb
    {
        quint32 sequence = 0;
        bool in = false;
        quint32 endpoint = 0;
        quint32 length = 0; // of the data that the host sends or has room for
        QByteArray setup;   // 8 bytes
        QByteArray data;    // as sent by the host
    };
    struct Setup
    {
        quint8 type;
        quint8 request;
        quint16 value;
        quint16 index;
        quint16 length;
    };

    void receive();
    // Takes one message off what was received; false when it is not complete yet.
    bool takeMessage();
    void submit(const Urb &urb);
    void unlink(quint32 sequence, quint32 target);
    void control(const Urb &urb);
    std::optional<QByteArray> standardRequest(const Setup &setup);
    std::optional<QByteArray> classRequest(const Setup &setup);
    void transferReport(const Urb &urb, const Setup &setup);
    void exchange(const Urb &urb, const Setup &setup, const Fault &fault);
    void endLater(const Urb &urb, std::chrono::milliseconds delay, std::function<void()> end);

    void complete(const Urb &urb, int status, const QByteArray &data = {});
    void send(const QByteArray &message);
    void flush();
    void lose(const QString &reason);
    void pullOut();
    void failForAbsence(const Urb &urb);

    FaultyFrame &frame;
    FrameLog &log;
    FileDescriptor socket;
    QSocketNotifier readable;
    QSocketNotifier writable;
    QByteArray incoming;
    QByteArray outgoing;
    // URBs that the host still waits for, by their sequence number.
    struct Waiting
    {
        Urb urb;
        // A number of its own: a timer that finds another number, or none, comes too late.
        quint64 ticket = 0;
    };
    QHash<quint32, Waiting> pending;
    quint64 tickets = 0;
    bool out = false; // the cable is out: control transfers fail
    int failures = 0; // transfers that failed for that
    bool hostGone = false;

    quint8 configuration = 0;
    quint8 idleRate = 0;
    bool halted = false; // the interrupt endpoint
};

} // namespace sim
