// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "devicelock.h"
#include "portsettings.h"

#include <QDeadlineTimer>
#include <QIODevice>
#include <QObject>
#include <QSerialPort>
#include <QSocketNotifier>

#include <memory>

// One serial port. A bare name such as "ttyUSB0" means /dev/ttyUSB0. An open port is locked, and
// one that another program has locked or made its own is not opened, by root neither.
//
// Every operation that answers false or -1 leaves the reason, as a sentence for the user, in
// errorString(). A port whose other end vanishes is closed, told by hangUp(), and can be opened
// again. Nothing here waits longer than MaxDrainMs, and hardly at all for a line that goes on
// taking no bytes. One thread only.
class Posix_QextSerialPort : public QObject
{
    Q_OBJECT
public:
    // How a caller means to learn of bytes; readyRead() is emitted in both modes.
    enum QueryMode { Polling = 0, EventDriven = 1 };

    // Most bytes kept that nobody has read, and most that the line has not taken.
    static constexpr qint64 MaxWaiting = 16384;
    static constexpr int MaxDrainMs = 3000;

    // Opens nothing. Settings that cannot be are left at their defaults.
    Posix_QextSerialPort(QString portName, const PortSettings &wanted,
                         QueryMode queryMode = Polling, QObject *parent = nullptr);
    ~Posix_QextSerialPort() override;

    // Of the next open().
    void setPortName(const QString &portName);
    // False when the port is open already. A port that opens but silently keeps other settings
    // than those asked for is open; errorString() names them then, and is empty otherwise.
    bool open(QIODevice::OpenMode openMode);
    // Lets written bytes leave first, as far as that is soon; drops the rest.
    void close();
    bool isOpen() const;
    // Tells hangUp() now if the other end is gone, rather than when the event loop hears of it.
    void lookForHangUp();

    // The settings outlive close(). On an open port each setter first lets the bytes leave that
    // were written before; false when they do not, or when the port does not take the setting,
    // and what was set stays then.
    bool setBaudRate(BaudRateType rate);
    bool setDataBits(DataBitsType bits);
    bool setParity(ParityType parity);
    // 1.5 stop bits are refused: they would silently become one. So are 2 after 5 data bits, which
    // the usual hardware makes 1.5.
    bool setStopBits(StopBitsType bits);
    bool setFlowControl(FlowType flow);
    // How much longer than the line needs for them written bytes may take to leave, in ms.
    bool setTimeout(long milliseconds);

    // Bytes that can be read.
    qint64 size() const;
    // How many bytes were read or taken for writing, which is at once; -1 when the port is not
    // open, or when the line has not taken MaxWaiting bytes written before.
    qint64 readData(char *data, qint64 maxSize);
    qint64 writeData(const char *data, qint64 length);

    QueryMode mode() const { return askedMode; }
    QString errorString() const { return reason; }
    // Whether the last open() found the port with another program.
    bool isInUse() const { return usedElsewhere; }

signals:
    // Bytes have arrived; again, from the event loop, as long as some of the bytes are read each
    // time and others remain.
    void readyRead();
    // The other end is gone and the port is closed.
    void hangUp();

    // To itself, queued.
    void bytesWait(QPrivateSignal);
    void lineLost(QPrivateSignal);

private:
    enum class Setting { BaudRate, DataBits, Parity, StopBits, FlowControl };

    bool change(const PortSettings &wanted, Setting setting);
    bool pass(const PortSettings &wanted, Setting setting);
    void dropStickParity();
    QString mismatch(const PortSettings &wanted, Setting setting) const;
    QString notDone(const PortSettings &wanted, Setting setting) const;
    QString node() const;
    bool lockPort();
    bool refuseAsInUse(const DeviceUser &user);
    QString lockFileKeepsOut();
    QString whyNotOpened();
    bool drain();
    bool movesAgain();
    bool waitForLine();
    qint64 bytesLeft() const;
    bool lineBusy() const;
    int microsecondsPerByte() const;
    void announce();
    void deliver();
    bool isHungUp() const;
    void judgeError();
    void loseLine();
    void sayFarewell();
    bool refuse(const QString &why);

    FileDescriptor lock; // while the port is open
    QSerialPort port;
    std::unique_ptr<QSocketNotifier> hangUpWatch; // while the port is open
    QString name;
    PortSettings settings;
    QueryMode askedMode;
    QString reason;
    QDeadlineTimer lineFree; // when the bytes written so far can have left at the earliest
    qint64 stuckBytes = 0; // left over when drain() last gave up, and written since; 0: it did not
    int strayErrors = 0;   // in a row, without a byte between them
    bool usedElsewhere = false;
    bool hangingUp = false;
    bool announced = false;
};
