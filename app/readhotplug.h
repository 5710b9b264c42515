// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/filedescriptor.h"
#include "device/stoppablethread.h"

#include <QByteArrayView>

#include <array>

// Listens to the device events of the kernel and of udevd, and tells when a touch frame comes or
// goes. One plug can be told several times.
class ReadHotplugThread : public StoppableThread
{
    Q_OBJECT
public:
    enum class Event { None, Added, Removed };

    static constexpr int MinMessage = 32;
    static constexpr int MaxMessage = 4096;

    // Opens and binds the event socket; failures are told on standard error, and nothing is
    // received then.
    ReadHotplugThread();
    // Listens to a datagram socket with the same messages.
    explicit ReadHotplugThread(FileDescriptor events);
    ~ReadHotplugThread() override;

    // Starts; where the system has no room for another thread, as soon as there is some. What is
    // said until then is heard then.
    void begin();
    void terminate() override;

    // What a message says about the controller's vendor. A message is a list of properties, each
    // ended by a NUL byte.
    static Event parse(QByteArrayView message);

signals:
    void DeviceAdd();
    void DeviceRemove();
    // Messages were lost before they could be read: what is connected must be looked up anew.
    void EventsLost();

protected:
    void run() override;

private:
    FileDescriptor sockfd;
    FileDescriptor wakeUp; // readable when the thread is to end
    std::array<char, MaxMessage> buf{};
};
