// SPDX-License-Identifier: GPL-3.0-or-later

#include "serialsession.h"

#include "device/portsettings.h"
#include "device/serialframing.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ratio>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;
using std::chrono::milliseconds;

namespace sim {

namespace {

constexpr qint64 BitsPerByte = 10; // with start and stop bit
constexpr int RateTolerancePercent = 2;

// What did not travel is zero.
Frame frameOf(const QByteArray &bytes)
{
    Frame frame{};
    std::copy(bytes.begin(), bytes.end(), frame.begin());
    return frame;
}

QByteArray onLine(const Frame &frame)
{
    command::serial::LineBuffer line;
    const int length = command::serial::putOnLine(frame, line);
    return {reinterpret_cast<const char *>(line.data()), length};
}

} // namespace

SerialSession::SerialSession(Profile profile, FaultPlan faults, const Clock &clock,
                             QString linkPath)
    : Session(std::move(profile), std::move(faults), clock)
    , link(std::move(linkPath))
    , ownRate(bitsPerSecond(BAUD9600))
{
    for (QTimer *timer : {&busy, &speaking}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&busy, &QTimer::timeout, this, [this] {
        if (!delayed.isEmpty())
            execute(std::exchange(delayed, {}), {});
        listen();
    });
    connect(&speaking, &QTimer::timeout, this, [this] {
        if (!said.isEmpty())
            say();
        speak();
    });
}

SerialSession::~SerialSession()
{
    SerialSession::release();
}

QString SerialSession::place() const
{
    return line ? line->path() : QString();
}

QString SerialSession::state() const
{
    return Session::state() + u" rate=%1"_s.arg(ownRate);
}

QString SerialSession::attach()
{
    QString problem;
    line = SerialLine::open(&problem);
    if (!line)
        return problem;
    // Queued, from the line's thread: by then it may have been replaced.
    ++attachments;
    connect(line.get(), &SerialLine::heard, this,
            [this, number = attachments](const QByteArray &bytes, int rate) {
                if (!line || attachments != number)
                    return;
                waiting.push_back({bytes, rate});
                listen();
            });
    connect(line.get(), &SerialLine::openChanged, this, [this, number = attachments](bool open) {
        if (line && attachments == number)
            note(open ? u"a program has opened the line"_s : u"nobody has the line open"_s);
    });
    if (!link.isEmpty()) {
        if (problem = makeLink(); !problem.isEmpty()) {
            line.reset();
            return problem;
        }
    }
    return {};
}

void SerialSession::release()
{
    busy.stop();
    speaking.stop();
    delayed.clear();
    said.clear();
    waiting.clear();
    beginAnew();
    if (line && !link.isEmpty())
        dropLink();
    line.reset();
}

QString SerialSession::makeLink()
{
    const QByteArray path = QFile::encodeName(link);
    const QByteArray target = QFile::encodeName(line->path());
    if (::symlink(target.constData(), path.constData()) == 0)
        return {};
    if (errno == EEXIST) {
        const QFileInfo present(link);
        const bool isStale = present.isSymLink() && !present.exists() &&
                             present.symLinkTarget().startsWith("/dev/pts/"_L1);
        if (!isStale) {
            return tr("%1 exists and is no left-over link to a terminal: remove it or choose "
                      "another name")
                .arg(link);
        }
        if (::unlink(path.constData()) == 0 && ::symlink(target.constData(), path.constData()) == 0)
            return {};
    }
    return tr("%1: the link cannot be made: %2")
        .arg(link, QString::fromLocal8Bit(std::strerror(errno)));
}

void SerialSession::dropLink()
{
    const QFileInfo present(link);
    if (present.isSymLink() && present.symLinkTarget() == line->path())
        ::unlink(QFile::encodeName(link).constData());
}

void SerialSession::listen()
{
    while (!waiting.empty() && !busy.isActive()) {
        Heard &next = waiting.front();
        if (next.bytes.isEmpty()) {
            waiting.pop_front();
        } else if (!isOwnRate(next.rate)) {
            note(u"noise: %1 bytes at %2 baud, listens at %3"_s.arg(next.bytes.size())
                     .arg(next.rate)
                     .arg(ownRate));
            beginAnew();
            waiting.pop_front();
        } else {
            const char byte = next.bytes.front();
            next.bytes.remove(0, 1);
            if (take(byte))
                obey({reinterpret_cast<const char *>(receiver.frame()), receiver.frameLength()});
        }
    }
}

// True when the byte completes a frame.
bool SerialSession::take(char byte)
{
    understood.bytes += byte;
    auto outcome = UartReceiver::Outcome::Moved;
    while (outcome == UartReceiver::Outcome::Moved)
        outcome = receiver.step(understood);
    return outcome == UartReceiver::Outcome::FrameFound;
}

void SerialSession::beginAnew()
{
    receiver.reset();
    understood.bytes.clear();
}

qint64 SerialSession::Understood::readData(char *data, qint64 maxSize)
{
    std::copy_n(bytes.constBegin(), maxSize, data);
    bytes.remove(0, maxSize);
    return maxSize;
}

void SerialSession::obey(const QByteArray &bytes)
{
    const Fault fault = beginTransfer();
    switch (fault.kind) {
    case Fault::Kind::Unplug:
        pulled();
        return;
    case Fault::Kind::Stall:
        busy.start(fault.duration);
        return;
    case Fault::Kind::Late:
        delayed = bytes;
        busy.start(fault.duration);
        return;
    case Fault::Kind::Lose:
        loseLast(bytes, fault.bytes);
        return;
    case Fault::Kind::Noise: {
        QByteArray spoilt = bytes;
        spoilt.insert(command::serial::HeaderSize, noise(fault.bytes));
        // The frame ends where it would; what was pushed out of it stands behind it.
        waiting.front().bytes.prepend(spoilt.mid(bytes.size()));
        execute(spoilt.left(bytes.size()), fault);
        return;
    }
    default:
        execute(bytes, fault);
    }
}

// Goes on as though the last bytes of a frame that has just come had not come yet.
void SerialSession::loseLast(const QByteArray &bytes, int count)
{
    beginAnew();
    QByteArray came = onLine(frameOf(bytes));
    came.chop(count);
    for (const char byte : came)
        take(byte);
}

void SerialSession::execute(const QByteArray &bytes, const Fault &fault)
{
    emit logged(log.command(frame.write(frameOf(bytes), fault, int(bytes.size()))));
    if (const QString news = frame.takeNews(); !news.isEmpty())
        note(news);
    changeRate();
    speak();
}

// A number that names no rate changes none.
void SerialSession::changeRate()
{
    const auto code = BaudRateType(frame.firmware().baudCode().value_or(BAUD9600));
    const int rate = bitsPerSecond(code);
    if (rate == 0 || rate == ownRate)
        return;
    ownRate = rate;
    beginAnew();
    note(u"listens at %1 baud"_s.arg(ownRate));
}

// Puts the next reply on the line unless one is under way.
void SerialSession::speak()
{
    while (frame.plugged() && !speaking.isActive() && frame.hasReply()) {
        const Fault fault = beginTransfer();
        if (fault.kind == Fault::Kind::Unplug) {
            pulled();
            return;
        }
        if (fault.kind == Fault::Kind::Stall) {
            speaking.start(fault.duration); // and then says the reply again, as another transfer
            return;
        }
        const bool isTorn = fault.kind == Fault::Kind::Torn;
        reply = frame.read(isTorn ? fault : Fault()).bytes;
        if (fault.kind == Fault::Kind::Silent)
            continue;
        said = onLine(reply);
        if (fault.kind == Fault::Kind::Repeat)
            said += onLine(reply);
        else if (fault.kind == Fault::Kind::Noise)
            said.insert(command::serial::SyncSize + command::serial::HeaderSize,
                        noise(fault.bytes));
        else if (fault.kind == Fault::Kind::Lose)
            said.chop(fault.bytes);
        const milliseconds late =
            fault.kind == Fault::Kind::Late ? fault.duration : milliseconds(0);
        speaking.start(lineTime(said.size()) + late);
    }
    // What comes by itself is not to be waited for with nobody looking.
    if (const auto wait = frame.untilReply(); wait && frame.plugged() && !speaking.isActive())
        speaking.start(*wait);
}

void SerialSession::say()
{
    const QByteArray bytes = std::exchange(said, {});
    emit logged(log.report(reply, true));
    if (!line->isOpen()) {
        note(u"lost: nobody has the line open"_s);
    } else if (const int rate = line->rate(); !isOwnRate(rate)) {
        note(u"lost: said at %1 baud on a line at %2"_s.arg(ownRate).arg(rate));
    } else if (const qint64 left = bytes.size() - line->write(bytes); left > 0) {
        note(u"lost: %1 bytes that the program does not read"_s.arg(left));
    }
}

Fault SerialSession::beginTransfer()
{
    const Fault fault = frame.beginTransfer();
    if (fault.kind != Fault::Kind::None)
        note(words(fault, frame.transfers()));
    return fault;
}

bool SerialSession::isOwnRate(int other) const
{
    return std::abs(other - ownRate) * 100 <= ownRate * RateTolerancePercent;
}

QByteArray SerialSession::noise(int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += char(noiseSource() & 0xFF);
    return bytes;
}

milliseconds SerialSession::lineTime(qsizetype bytes) const
{
    return milliseconds((bytes * BitsPerByte * std::milli::den + ownRate - 1) / ownRate);
}

} // namespace sim
