// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/filedescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <atomic>
#include <memory>
#include <thread>

namespace sim {

// The device's end of a pseudo-terminal, raw. Programs open path() as a serial port.
//
// A thread of its own takes bytes the moment they arrive, so that each comes with the rate that
// the terminal then had, even while the owner's event loop is busy. Destruction hangs up.
class SerialLine : public QObject
{
    Q_OBJECT
public:
    // Nothing when there is no pseudo-terminal; problem then says why.
    static std::unique_ptr<SerialLine> open(QString *problem);
    ~SerialLine() override;

    QString path() const { return node; }
    // Whether a program has it open.
    bool isOpen() const { return opened; }
    // What the terminal is set to, in bits per second; 0 if it does not tell.
    int rate() const;
    // How many bytes the terminal took, at once.
    qint64 write(const QByteArray &bytes);

signals:
    // All from the line's own thread.
    void heard(const QByteArray &bytes, int rate);
    void openChanged(bool open);

private:
    SerialLine() = default;
    QString prepare();
    void run();
    void setOpen(bool open);
    void hear();

    QString node;
    FileDescriptor master;
    FileDescriptor openings; // becomes readable when somebody opens the terminal
    FileDescriptor ending;   // becomes readable when the thread is to end
    std::atomic<bool> opened = false;
    std::thread listener;
};

} // namespace sim
