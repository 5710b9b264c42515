// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "portsettings.h"
#include "serialframing.h"
#include "traffic.h"
#include "uartreceiver.h"

#include <QObject>
#include <QString>

class Posix_QextSerialPort;

// Frames over a serial line: a port, the search for frames among its bytes, the announcement of
// the rate to the touch frame, and what went wrong.
class SerialLink : public QObject
{
    Q_OBJECT
public:
    explicit SerialLink(QObject *parent = nullptr);

    // 9600 baud, 8 data bits, no parity, 1 stop bit: how a touch frame listens at first.
    void DefUartData() { defUartData = {}; }
    // Opens a port in the default format; false, with problem(), when that fails. What is open
    // already has to be closed first.
    bool open(const QString &portName);
    // Tells the touch frame at each rate that it may listen at which one it is to use, then sets
    // the port to that and to its data bits, stop bits and parity. What the port does not take
    // is in problem(). Flow control and time-out are not applied.
    void toMyComSetting(const PortSettings &settings);
    bool isOpen() const;
    // Leaves why as the problem.
    void close(const QString &why = {});
    // Asks the kernel whether the other end is gone, which a busy program hears of late: lost()
    // then.
    void lookForHangUp();
    void forgetProblem() { serialProblem.clear(); }

    // Writes a copy of FrameSize bytes, as far as the framing carries them.
    void send(const UCHAR *frame);
    // The next frame that has come in whole, valid until the next call; nullptr until more bytes
    // have come.
    UCHAR *takeFrame();

    QString portName() const { return uartName; } // of the last open()
    // Why the port did not open, which settings it does not take, or how it was lost, as sentences
    // for the user; empty when all is as was asked.
    QString problem() const { return serialProblem; }
    // Whether the last open() found the port with another program.
    bool isInUse() const;

signals:
    // Bytes have come in; takeFrame() until it has none.
    void readable();
    // Each frame that takeFrame() gives, as far as it came over the line, and each that was to be
    // sent.
    void traffic(const Traffic &traffic);
    // The other end is gone: the port is closed, and problem() says so.
    void lost();

private:
    void applyFormat(const PortSettings &settings, QStringList &refusals);
    void UartSetBaud(int code);
    void onHangUp();

    PortSettings defUartData;
    Posix_QextSerialPort *myCOM; // child
    UartReceiver uartReceiver;
    command::serial::LineBuffer SendBufUart{};
    QString uartName;
    QString serialProblem;
};
