// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/uartreceiver.h"
#include "serialline.h"
#include "session.h"

#include <QTimer>

#include <deque>
#include <memory>
#include <random>

namespace sim {

// The simulated frame on a serial line, a pseudo-terminal of this machine.
//
// Like a real controller it understands only what arrives at its own rate, 9600 baud until the
// baud command says otherwise; other bytes are noise and end a frame that has begun. Each reply is
// said once, after the time that its bytes take at that rate, and is lost when the terminal then
// stands at another rate or nobody has it open. An unplug hangs up and the next plug makes another
// terminal.
class SerialSession final : public Session
{
    Q_OBJECT
public:
    // Starts unplugged. While it is plugged a symbolic link at this path, if any, leads to the
    // terminal. Only a link of the same kind whose terminal is gone is replaced.
    SerialSession(Profile profile, FaultPlan faults, const Clock &clock, QString link = {});
    ~SerialSession() override;

    // The terminal's path.
    QString place() const override;
    QString state() const override;
    // Bits per second at which the frame listens and speaks.
    int rate() const { return ownRate; }

private:
    struct Heard
    {
        QByteArray bytes;
        int rate; // of the terminal when they arrived
    };

    // What has come at the frame's own rate, for its receiver.
    struct Understood
    {
        qint64 size() const { return bytes.size(); }
        qint64 readData(char *data, qint64 maxSize);

        QByteArray bytes;
    };

    QString attach() override;
    void release() override;
    void felt() override { speak(); }
    QString makeLink();
    void dropLink();

    void listen();
    bool take(char byte);
    void beginAnew();
    void obey(const QByteArray &bytes);
    void loseLast(const QByteArray &bytes, int count);
    void execute(const QByteArray &bytes, const Fault &fault);
    void changeRate();
    void speak();
    void say();
    Fault beginTransfer();
    bool isOwnRate(int other) const;
    QByteArray noise(int count);
    std::chrono::milliseconds lineTime(qsizetype bytes) const;

    const QString link;
    std::unique_ptr<SerialLine> line; // while plugged
    quint64 attachments = 0;
    int ownRate;
    UartReceiver receiver{UartReceiver::Sender::Host};
    Understood understood;     // as far as the receiver has not taken it
    std::deque<Heard> waiting; // not read yet
    QTimer busy;               // runs while a fault keeps the frame from listening
    QByteArray delayed;        // the command that is obeyed when it ends
    QTimer speaking;           // runs while a reply is on the line
    QByteArray said;           // what arrives when it ends
    Frame reply{};             // the same as a frame
    std::minstd_rand noiseSource;
};

} // namespace sim
