// SPDX-License-Identifier: GPL-3.0-or-later

#include "usbdevice.h"

#include <QTimer>
#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/sockios.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace sim {

namespace {

// Longer than a host that polls leaves between two transfers.
constexpr auto PauseBudget = 150ms;
constexpr auto HeardBudget = 200ms;
constexpr int PollMs = 10;

// URB messages: a 48-byte header of big-endian words, then the data of a submitted OUT transfer
// or of an answered IN transfer.
namespace urb {
constexpr qsizetype HeaderSize = 48;
constexpr quint32 Submit = 1;
constexpr quint32 Unlink = 2;
constexpr quint32 SubmitDone = 3;
constexpr quint32 UnlinkDone = 4;
constexpr quint32 DirectionIn = 1;
// Places of words and of the setup packet, in bytes.
constexpr int Command = 0;
constexpr int Sequence = 4;
constexpr int Direction = 12;
constexpr int Endpoint = 16;
constexpr int TransferLength = 24;
constexpr int Setup = 40;
constexpr int SetupSize = 8;
constexpr int UnlinkTarget = 20;
constexpr int Status = 20;
constexpr int ActualLength = 24;
} // namespace urb

// Requests that every USB device knows, and those of a HID device.
namespace usb {
constexpr quint8 DirectionIn = 0x80;
constexpr quint8 KindMask = 0x60;
constexpr quint8 StandardKind = 0x00;
constexpr quint8 ClassKind = 0x20;
constexpr quint8 RecipientMask = 0x1F;
constexpr quint8 ToInterface = 1;
constexpr quint8 ToEndpoint = 2;

constexpr quint8 GetStatus = 0;
constexpr quint8 ClearFeature = 1;
constexpr quint8 SetFeature = 3;
constexpr quint8 SetAddress = 5;
constexpr quint8 GetDescriptor = 6;
constexpr quint8 GetConfiguration = 8;
constexpr quint8 SetConfiguration = 9;
constexpr quint8 GetInterface = 10;
constexpr quint8 SetInterface = 11;

constexpr quint8 DeviceDescriptor = 1;
constexpr quint8 ConfigurationDescriptor = 2;
constexpr quint8 StringDescriptor = 3;
constexpr quint8 HidDescriptor = 0x21;
constexpr quint8 ReportDescriptor = 0x22;

constexpr quint16 EndpointHalt = 0;
constexpr quint8 OnlyConfiguration = 1;
constexpr quint16 InterruptIn = 0x81;

constexpr quint8 GetReport = 0x01;
constexpr quint8 GetIdle = 0x02;
constexpr quint8 SetReport = 0x09;
constexpr quint8 SetIdle = 0x0A;
constexpr quint8 InputReport = 1;
constexpr quint8 OutputReport = 2;
} // namespace usb

QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray result;
    for (const int value : values)
        result.append(char(value));
    return result;
}

int low(int value)
{
    return value & 0xFF;
}

int high(int value)
{
    return value >> 8 & 0xFF;
}

constexpr int ReportBytes = FrameSize - 1;

QByteArray reportDescriptor()
{
    return bytes({
        0x06, 0x00,
        0xFF,                    // usage page: vendor
        0x09, 0x01,              // usage 1
        0xA1, 0x01,              // collection: application
        0x85, command::ReportId, //   report id
        0x15, 0x00,              //   logical minimum 0
        0x26, 0xFF,
        0x00,              //   logical maximum 255
        0x75, 0x08,        //   fields of eight bits
        0x95, ReportBytes, //   as many as a frame has bytes behind the report id
        0x09, 0x01,        //   usage 1
        0x81, 0x02,        //   input: data, variable, absolute
        0x95, ReportBytes, //
        0x09, 0x01,        //   usage 1
        0x91, 0x02,        //   output: data, variable, absolute
        0xC0,              // end of the collection
    });
}

QByteArray hidDescriptor()
{
    const int length = int(reportDescriptor().size());
    return bytes({9, usb::HidDescriptor, 0x11, 0x01, 0, 1, usb::ReportDescriptor, low(length),
                  high(length)});
}

QByteArray deviceDescriptor(const Profile &profile)
{
    return bytes({
        18, usb::DeviceDescriptor, 0x00, 0x02,       // USB 2.0
        0, 0, 0,                                     // the interface tells the class
        64,                                          // bytes of a packet on endpoint 0
        low(VendorId), high(VendorId),               //
        low(profile.product), high(profile.product), //
        low(profile.release), high(profile.release), //
        1, 2, 0,                                     // strings: manufacturer, product, no serial
        1,                                           // one configuration
    });
}

QByteArray configurationDescriptor()
{
    const QByteArray interfaceDescriptor = bytes({9, 4, 0, 0, 1, 3, 0, 0, 0}); // HID, one endpoint
    const QByteArray endpointDescriptor =
        bytes({7, 5, usb::InterruptIn, 3, FrameSize, 0, 10}); // interrupt, polled every 10 ms
    const QByteArray inside = interfaceDescriptor + hidDescriptor() + endpointDescriptor;
    const int total = 9 + int(inside.size());
    return bytes({9, usb::ConfigurationDescriptor, low(total), high(total), 1,
                  usb::OnlyConfiguration, 0, 0x80, 50}) // powered by the bus, 100 mA
           + inside;
}

std::optional<QByteArray> stringDescriptor(int index)
{
    static const QStringList strings = {QString(), u"Quorvel"_s, u"Simulated touch frame"_s};
    if (index >= strings.size())
        return std::nullopt;
    QByteArray text;
    if (index == 0) {
        text = bytes({0x09, 0x04}); // the one language: English
    } else {
        for (const QChar letter : strings[index])
            text += bytes({low(letter.unicode()), high(letter.unicode())});
    }
    return bytes({2 + int(text.size()), usb::StringDescriptor}) + text;
}

quint32 wordAt(const QByteArray &message, int place)
{
    return qFromBigEndian<quint32>(message.constData() + place);
}

void putWord(QByteArray *message, int place, quint32 value)
{
    qToBigEndian(value, message->data() + place);
}

QByteArray answerTo(quint32 command, quint32 sequence, int status)
{
    QByteArray message(urb::HeaderSize, '\0');
    putWord(&message, urb::Command, command);
    putWord(&message, urb::Sequence, sequence);
    putWord(&message, urb::Status, quint32(status));
    return message;
}

} // namespace

UsbDevice::UsbDevice(FaultyFrame &theFrame, FrameLog &theLog, FileDescriptor theSocket,
                     QObject *parent)
    : QObject(parent)
    , frame(theFrame)
    , log(theLog)
    , socket(std::move(theSocket))
    , readable(socket.get(), QSocketNotifier::Read)
    , writable(socket.get(), QSocketNotifier::Write)
{
    writable.setEnabled(false);
    connect(&readable, &QSocketNotifier::activated, this, &UsbDevice::receive);
    connect(&writable, &QSocketNotifier::activated, this, &UsbDevice::flush);
}

void UsbDevice::hangUp()
{
    pullOut();
    // From here to the hub's notice the kernel's virtual host controller answers nothing, and a
    // transfer that begins in between holds up the whole unplug for ten seconds. A host that polls
    // leaves a pause after each transfer: that is the moment to wait for.
    const auto pauseBy = std::chrono::steady_clock::now() + PauseBudget;
    pollfd host{socket.get(), POLLIN, 0};
    while (!hostGone && failures == 0 && std::chrono::steady_clock::now() < pauseBy) {
        if (::poll(&host, 1, PollMs) > 0)
            receive();
    }
    const auto heardBy = std::chrono::steady_clock::now() + HeardBudget;
    int unheard = 0;
    while (!hostGone && ::ioctl(socket.get(), SIOCOUTQ, &unheard) == 0 && unheard > 0 &&
           std::chrono::steady_clock::now() < heardBy)
        std::this_thread::sleep_for(1ms);
    hostGone = true;
    readable.setEnabled(false);
    writable.setEnabled(false);
}

void UsbDevice::pullOut()
{
    out = true;
    // Completing a transfer takes it off the list.
    const QHash<quint32, Waiting> left = pending;
    for (const Waiting &waiting : left) {
        if (waiting.urb.endpoint == 0)
            failForAbsence(waiting.urb);
    }
}

// A host controller reports a device that does not answer as a protocol error.
void UsbDevice::failForAbsence(const Urb &request)
{
    ++failures;
    complete(request, -EPROTO);
}

void UsbDevice::receive()
{
    std::array<char, 16 * 1024> chunk; // NOLINT(cppcoreguidelines-pro-type-member-init)
    const ssize_t count = ::recv(socket.get(), chunk.data(), chunk.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (count <= 0) {
        lose(count == 0 ? tr("the host let go of the device")
                        : tr("the host cannot be heard: %1")
                              .arg(QString::fromLocal8Bit(std::strerror(errno))));
        return;
    }
    incoming.append(chunk.data(), count);
    while (!hostGone && takeMessage()) {
    }
}

bool UsbDevice::takeMessage()
{
    if (incoming.size() < urb::HeaderSize)
        return false;
    const quint32 command = wordAt(incoming, urb::Command);
    const quint32 sequence = wordAt(incoming, urb::Sequence);
    if (command == urb::Unlink) {
        const quint32 target = wordAt(incoming, urb::UnlinkTarget);
        incoming.remove(0, urb::HeaderSize);
        unlink(sequence, target);
        return true;
    }
    if (command != urb::Submit) {
        lose(tr("the host sent %1, which is no URB message").arg(command));
        return false;
    }
    Urb request;
    request.sequence = sequence;
    request.in = wordAt(incoming, urb::Direction) == urb::DirectionIn;
    request.endpoint = wordAt(incoming, urb::Endpoint);
    request.length = wordAt(incoming, urb::TransferLength);
    if (request.length > quint32(MaxTransfer)) {
        lose(tr("the host sent a transfer of %1 bytes").arg(request.length));
        return false;
    }
    const qsizetype dataSize = request.in ? 0 : qsizetype(request.length);
    if (incoming.size() < urb::HeaderSize + dataSize)
        return false;
    request.setup = incoming.mid(urb::Setup, urb::SetupSize);
    request.data = incoming.mid(urb::HeaderSize, dataSize);
    incoming.remove(0, urb::HeaderSize + dataSize);
    submit(request);
    return true;
}

void UsbDevice::submit(const Urb &request)
{
    pending.insert(request.sequence, {request, ++tickets});
    if (out && request.endpoint == 0) {
        failForAbsence(request);
        return;
    }
    if (request.endpoint == 0) {
        control(request);
        return;
    }
    // The interrupt endpoint has nothing to say: its URB waits until it is unlinked.
    if (!request.in || request.endpoint != (usb::InterruptIn & 0x0F))
        complete(request, -EPIPE);
}

void UsbDevice::unlink(quint32 sequence, quint32 target)
{
    const bool waited = pending.remove(target) > 0;
    send(answerTo(urb::UnlinkDone, sequence, waited ? -ECONNRESET : 0));
}

void UsbDevice::control(const Urb &request)
{
    const auto *raw = reinterpret_cast<const uchar *>(request.setup.constData());
    const Setup setup{raw[0], raw[1], qFromLittleEndian<quint16>(raw + 2),
                      qFromLittleEndian<quint16>(raw + 4), qFromLittleEndian<quint16>(raw + 6)};
    const bool setupIn = (setup.type & usb::DirectionIn) != 0;
    const quint8 kind = setup.type & usb::KindMask;
    if (setup.length > 0 && setupIn != request.in) {
        complete(request, -EPIPE);
        return;
    }
    if (kind == usb::ClassKind && setup.request == (setupIn ? usb::GetReport : usb::SetReport)) {
        transferReport(request, setup);
        return;
    }
    const std::optional<QByteArray> answer = kind == usb::StandardKind ? standardRequest(setup)
                                             : kind == usb::ClassKind  ? classRequest(setup)
                                                                       : std::nullopt;
    if (answer)
        complete(request, 0, answer->left(setup.length));
    else
        complete(request, -EPIPE);
}

// What is answered to a standard request; nothing stands for a protocol stall.
std::optional<QByteArray> UsbDevice::standardRequest(const Setup &setup)
{
    const quint8 recipient = setup.type & usb::RecipientMask;
    const bool toInterruptIn = recipient == usb::ToEndpoint && setup.index == usb::InterruptIn;
    switch (setup.request) {
    case usb::GetStatus:
        return bytes({toInterruptIn && halted ? 1 : 0, 0});
    case usb::ClearFeature:
    case usb::SetFeature:
        if (recipient != usb::ToEndpoint || setup.value != usb::EndpointHalt)
            return std::nullopt;
        if (toInterruptIn)
            halted = setup.request == usb::SetFeature;
        return QByteArray();
    case usb::SetAddress:
        return QByteArray();
    case usb::GetDescriptor:
        switch (setup.value >> 8) {
        case usb::DeviceDescriptor:
            return deviceDescriptor(frame.firmware().profile());
        case usb::ConfigurationDescriptor:
            return low(setup.value) == 0 ? std::optional(configurationDescriptor()) : std::nullopt;
        case usb::StringDescriptor:
            return stringDescriptor(low(setup.value));
        case usb::HidDescriptor:
            return hidDescriptor();
        case usb::ReportDescriptor:
            return reportDescriptor();
        default:
            return std::nullopt;
        }
    case usb::GetConfiguration:
        return bytes({configuration});
    case usb::SetConfiguration:
        if (setup.value > usb::OnlyConfiguration)
            return std::nullopt;
        configuration = quint8(setup.value);
        halted = false;
        return QByteArray();
    case usb::GetInterface:
        return bytes({0});
    case usb::SetInterface:
        return setup.value == 0 && setup.index == 0 ? std::optional(QByteArray()) : std::nullopt;
    default:
        return std::nullopt;
    }
}

std::optional<QByteArray> UsbDevice::classRequest(const Setup &setup)
{
    if ((setup.type & usb::RecipientMask) != usb::ToInterface)
        return std::nullopt;
    switch (setup.request) {
    case usb::GetIdle:
        return bytes({idleRate});
    case usb::SetIdle:
        idleRate = quint8(high(setup.value));
        return QByteArray();
    default:
        return std::nullopt;
    }
}

void UsbDevice::transferReport(const Urb &request, const Setup &setup)
{
    const int type = request.in ? usb::InputReport : usb::OutputReport;
    const bool ours = setup.value == (type << 8 | command::ReportId) &&
                      (request.in || (!request.data.isEmpty() &&
                                      UCHAR(request.data.front()) == command::ReportId));
    if (!ours) {
        complete(request, -EPIPE);
        return;
    }
    const Fault fault = frame.beginTransfer();
    if (fault.kind != Fault::Kind::None)
        emit logged(log.note(words(fault, frame.transfers())));
    switch (fault.kind) {
    case Fault::Kind::Unplug:
        pullOut();
        emit pulled();
        return;
    case Fault::Kind::Stall:
        endLater(request, fault.duration, [this, request] { complete(request, -EPIPE); });
        return;
    case Fault::Kind::Late:
        endLater(request, fault.duration,
                 [this, request, setup, fault] { exchange(request, setup, fault); });
        return;
    default:
        exchange(request, setup, fault);
    }
}

void UsbDevice::exchange(const Urb &request, const Setup &setup, const Fault &fault)
{
    if (request.in) {
        const FaultyFrame::Report report = frame.read(fault);
        const QByteArray data(reinterpret_cast<const char *>(report.bytes.data()), FrameSize);
        if (const QStringList lines = log.report(report.bytes, report.fresh); !lines.isEmpty())
            emit logged(lines);
        complete(request, 0, data.left(setup.length));
        return;
    }
    Frame command{};
    const auto used = std::min<qsizetype>(request.data.size(), FrameSize);
    std::copy_n(request.data.constBegin() + 1, used - 1, command.begin() + 1);
    emit logged(log.command(frame.write(command, fault)));
    if (const QString news = frame.takeNews(); !news.isEmpty())
        emit logged(log.note(news));
    complete(request, 0);
}

void UsbDevice::endLater(const Urb &request, std::chrono::milliseconds delay,
                         std::function<void()> end)
{
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    const quint64 ticket = pending.value(request.sequence).ticket;
    connect(timer, &QTimer::timeout, this,
            [this, timer, sequence = request.sequence, ticket, end = std::move(end)] {
                timer->deleteLater();
                if (pending.value(sequence).ticket == ticket)
                    end();
            });
    timer->start(delay);
}

// Answers a URB: data for IN transfers; an OUT transfer that succeeds took all of its data.
void UsbDevice::complete(const Urb &request, int status, const QByteArray &data)
{
    pending.remove(request.sequence);
    const QByteArray sent = status == 0 && request.in ? data.left(request.length) : QByteArray();
    const quint32 taken = status == 0 && !request.in ? request.length : quint32(sent.size());
    QByteArray message = answerTo(urb::SubmitDone, request.sequence, status);
    putWord(&message, urb::ActualLength, taken);
    send(message + sent);
}

void UsbDevice::send(const QByteArray &message)
{
    outgoing += message;
    flush();
}

void UsbDevice::flush()
{
    if (hostGone)
        return;
    while (!outgoing.isEmpty()) {
        const ssize_t count = ::send(socket.get(), outgoing.constData(), size_t(outgoing.size()),
                                     MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && errno != EAGAIN) {
            lose(tr("the host cannot be answered: %1")
                     .arg(QString::fromLocal8Bit(std::strerror(errno))));
            return;
        }
        if (count < 0)
            break;
        outgoing.remove(0, count);
    }
    writable.setEnabled(!outgoing.isEmpty());
}

void UsbDevice::lose(const QString &reason)
{
    if (std::exchange(hostGone, true))
        return;
    pending.clear();
    readable.setEnabled(false);
    writable.setEnabled(false);
    emit lost(reason);
}

} // namespace sim
