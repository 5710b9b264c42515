// SPDX-License-Identifier: GPL-3.0-or-later

#include "seriallink.h"

#include "frame.h"
#include "posix_qextserialport.h"
#include "records.h"

#include <algorithm>

using namespace Qt::StringLiterals;

SerialLink::SerialLink(QObject *parent)
    : QObject(parent)
    , myCOM(new Posix_QextSerialPort(u"COM1"_s, defUartData, Posix_QextSerialPort::Polling, this))
{
    connect(myCOM, &Posix_QextSerialPort::readyRead, this, &SerialLink::readable);
    connect(myCOM, &Posix_QextSerialPort::hangUp, this, &SerialLink::onHangUp);
}

bool SerialLink::open(const QString &portName)
{
    if (!myCOM->isOpen()) {
        myCOM->setPortName(portName);
        uartName = portName;
    }
    serialProblem.clear();
    if (myCOM->open(QIODevice::ReadWrite))
        return true;
    serialProblem = myCOM->errorString();
    return false;
}

void SerialLink::toMyComSetting(const PortSettings &settings)
{
    QStringList refusals;
    // The touch frame knows no other format, whatever the port was set to last.
    applyFormat(defUartData, refusals);
    // It may be listening at any of these, and understands nothing sent at another.
    for (const BaudRateType rate : {BAUD9600, BAUD57600, BAUD115200}) {
        if (myCOM->setBaudRate(rate))
            UartSetBaud(settings.BaudRate);
        else
            refusals += myCOM->errorString();
    }
    if (!myCOM->setBaudRate(settings.BaudRate))
        refusals += myCOM->errorString();
    applyFormat(settings, refusals);
    refusals.removeDuplicates();
    serialProblem = refusals.join(u' ');
}

void SerialLink::applyFormat(const PortSettings &settings, QStringList &refusals)
{
    if (!myCOM->setDataBits(settings.DataBits))
        refusals += myCOM->errorString();
    if (!myCOM->setStopBits(settings.StopBits))
        refusals += myCOM->errorString();
    if (!myCOM->setParity(settings.Parity))
        refusals += myCOM->errorString();
}

void SerialLink::UartSetBaud(int code)
{
    send(command::BaudCommand{code}.encode().data());
}

bool SerialLink::isOpen() const
{
    return myCOM->isOpen();
}

bool SerialLink::isInUse() const
{
    return myCOM->isInUse();
}

void SerialLink::lookForHangUp()
{
    myCOM->lookForHangUp();
}

void SerialLink::close(const QString &why)
{
    myCOM->close();
    serialProblem = why;
}

void SerialLink::send(const UCHAR *frame)
{
    const Frame copy = command::frameAt(frame);
    const int length = command::serial::putOnLine(copy, SendBufUart);
    const bool taken =
        myCOM->writeData(reinterpret_cast<const char *>(SendBufUart.data()), length) == length;
    emit traffic({Traffic::Direction::ToFrame, Traffic::Over::Serial,
                  taken ? Traffic::Result::Done : Traffic::Result::Failed, copy});
}

UCHAR *SerialLink::takeFrame()
{
    // Notifications come when bytes arrive, not while bytes remain.
    for (;;) {
        const UartReceiver::Outcome outcome = uartReceiver.step(*myCOM);
        if (outcome == UartReceiver::Outcome::FrameFound) {
            // What stands behind its last byte did not come with it.
            Frame frame{};
            std::copy_n(uartReceiver.frame(), std::min(uartReceiver.frameLength(), FrameSize),
                        frame.begin());
            emit traffic({Traffic::Direction::FromFrame, Traffic::Over::Serial,
                          Traffic::Result::Done, frame});
            return uartReceiver.frame();
        }
        if (outcome == UartReceiver::Outcome::Waits)
            return nullptr;
    }
}

void SerialLink::onHangUp()
{
    serialProblem = myCOM->errorString();
    emit lost();
}
