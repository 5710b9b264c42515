// SPDX-License-Identifier: GPL-3.0-or-later

#include "posix_qextserialport.h"

#include "advice.h"
#include "link_log.h"
#include "noderights.h"

#include <QFile>

#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Bytes pass through an adapter's own buffers after the kernel has let go of them.
constexpr std::chrono::nanoseconds AdapterLatency = 3ms;
constexpr auto DrainPoll = 1ms;
// For a line that took nothing before.
constexpr auto StuckPatience = 20ms;
// More errors in a row than this, and the line is as good as gone.
constexpr int MaxStrayErrors = 100;
// Receivers cope with rates this far apart.
constexpr int RateTolerancePercent = 2;

std::optional<QSerialPort::DataBits> toQt(DataBitsType bits)
{
    switch (bits) {
    case DATA_5:
        return QSerialPort::Data5;
    case DATA_6:
        return QSerialPort::Data6;
    case DATA_7:
        return QSerialPort::Data7;
    case DATA_8:
        return QSerialPort::Data8;
    }
    return {};
}

std::optional<QSerialPort::Parity> toQt(ParityType parity)
{
    switch (parity) {
    case PAR_NONE:
        return QSerialPort::NoParity;
    case PAR_ODD:
        return QSerialPort::OddParity;
    case PAR_EVEN:
        return QSerialPort::EvenParity;
    case PAR_MARK:
        return QSerialPort::MarkParity;
    case PAR_SPACE:
        return QSerialPort::SpaceParity;
    }
    return {};
}

std::optional<QSerialPort::StopBits> toQt(StopBitsType bits)
{
    switch (bits) {
    case STOP_1:
        return QSerialPort::OneStop;
    case STOP_2:
        return QSerialPort::TwoStop;
    case STOP_1_5: // QSerialPort answers true and sets one
        break;
    }
    return {};
}

std::optional<QSerialPort::FlowControl> toQt(FlowType flow)
{
    switch (flow) {
    case FLOW_OFF:
        return QSerialPort::NoFlowControl;
    case FLOW_HARDWARE:
        return QSerialPort::HardwareControl;
    case FLOW_XONXOFF:
        return QSerialPort::SoftwareControl;
    }
    return {};
}

tcflag_t parityFlags(ParityType parity)
{
    switch (parity) {
    case PAR_NONE:
        break;
    case PAR_ODD:
        return PARENB | PARODD;
    case PAR_EVEN:
        return PARENB;
    case PAR_MARK:
        return PARENB | PARODD | CMSPAR;
    case PAR_SPACE:
        return PARENB | CMSPAR;
    }
    return 0;
}

tcflag_t sizeFlags(DataBitsType bits)
{
    switch (bits) {
    case DATA_5:
        return CS5;
    case DATA_6:
        return CS6;
    case DATA_7:
        return CS7;
    case DATA_8:
        break;
    }
    return CS8;
}

} // namespace

Posix_QextSerialPort::Posix_QextSerialPort(QString portName, const PortSettings &wanted,
                                           QueryMode queryMode, QObject *parent)
    : QObject(parent)
    , name(std::move(portName))
    , askedMode(queryMode)
{
    port.setReadBufferSize(MaxWaiting);
    connect(&port, &QSerialPort::readyRead, this, &Posix_QextSerialPort::announce);
    connect(&port, &QSerialPort::readyRead, this, [this] { strayErrors = 0; });
    connect(&port, &QSerialPort::bytesWritten, this, [this] { strayErrors = 0; });
    connect(&port, &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError error) {
        if (error == QSerialPort::ReadError || error == QSerialPort::ResourceError)
            judgeError();
    });
    connect(this, &Posix_QextSerialPort::bytesWait, this, &Posix_QextSerialPort::deliver,
            Qt::QueuedConnection);
    connect(this, &Posix_QextSerialPort::lineLost, this, &Posix_QextSerialPort::sayFarewell,
            Qt::QueuedConnection);
    setBaudRate(wanted.BaudRate);
    setDataBits(wanted.DataBits);
    setParity(wanted.Parity);
    setStopBits(wanted.StopBits);
    setFlowControl(wanted.FlowControl);
    setTimeout(wanted.Timeout_Millisec);
}

Posix_QextSerialPort::~Posix_QextSerialPort()
{
    close();
}

void Posix_QextSerialPort::setPortName(const QString &portName)
{
    name = portName;
}

bool Posix_QextSerialPort::open(QIODevice::OpenMode openMode)
{
    usedElsewhere = false;
    if (port.isOpen())
        return refuse(
            tr("The serial port %1 is open already. Close it first.").arg(port.portName()));
    if (name.isEmpty())
        return refuse(tr("No serial port is chosen. Enter a name such as ttyUSB0."));
    // Opening it would already change its rate under a program that uses it.
    if (!lockPort())
        return false;
    port.setPortName(name);
    if (!port.open(openMode)) {
        const QString why = whyNotOpened();
        lock = {};
        return refuse(why);
    }

    // Some versions of QSerialPort take the nothing that a line which hung up reads as for no
    // bytes yet, and never speak of it.
    hangUpWatch = std::make_unique<QSocketNotifier>(port.handle(), QSocketNotifier::Exception);
    connect(hangUpWatch.get(), &QSocketNotifier::activated, this,
            &Posix_QextSerialPort::judgeError);
    pass(settings, Setting::Parity); // once more, see dropStickParity()
    lineFree = {};
    stuckBytes = 0;
    strayErrors = 0;
    reason.clear();
    QStringList silentlyOther;
    for (const Setting setting : {Setting::BaudRate, Setting::DataBits, Setting::Parity,
                                  Setting::StopBits, Setting::FlowControl})
        if (const QString other = mismatch(settings, setting); !other.isEmpty())
            silentlyOther += other;
    if (!silentlyOther.isEmpty())
        refuse(silentlyOther.join(u' '));
    return true;
}

void Posix_QextSerialPort::close()
{
    if (!port.isOpen())
        return;
    // The kernel would wait half a minute for bytes that a halted line does not take.
    if (!drain())
        port.clear(QSerialPort::Output);
    hangUpWatch.reset(); // before its descriptor is gone
    port.close();
    lock = {};
    hangingUp = false;
}

bool Posix_QextSerialPort::isOpen() const
{
    return port.isOpen();
}

void Posix_QextSerialPort::lookForHangUp()
{
    if (!port.isOpen() || !isHungUp())
        return;
    loseLine();
    sayFarewell();
}

bool Posix_QextSerialPort::setBaudRate(BaudRateType rate)
{
    if (bitsPerSecond(rate) == 0)
        return refuse(tr("There is no baud rate number %1. Choose 0 (50 baud) to 21 (256000 baud).")
                          .arg(int(rate)));
    PortSettings wanted = settings;
    wanted.BaudRate = rate;
    return change(wanted, Setting::BaudRate);
}

bool Posix_QextSerialPort::setDataBits(DataBitsType bits)
{
    if (!toQt(bits))
        return refuse(
            tr("There is no data bits setting number %1. Choose 0 (5 bits) to 3 (8 bits).")
                .arg(int(bits)));
    PortSettings wanted = settings;
    wanted.DataBits = bits;
    return change(wanted, Setting::DataBits);
}

bool Posix_QextSerialPort::setParity(ParityType parity)
{
    if (!toQt(parity))
        return refuse(
            tr("There is no parity number %1. Choose 0 (none) to 4 (space).").arg(int(parity)));
    PortSettings wanted = settings;
    wanted.Parity = parity;
    return change(wanted, Setting::Parity);
}

bool Posix_QextSerialPort::setStopBits(StopBitsType bits)
{
    if (bits == STOP_1_5)
        return refuse(tr("1.5 stop bits cannot be set here. Choose 1 or 2 stop bits."));
    if (!toQt(bits))
        return refuse(tr("There is no stop bits setting number %1. Choose 0 (1 bit) or 2 (2 bits).")
                          .arg(int(bits)));
    if (bits == STOP_2 && settings.DataBits == DATA_5)
        return refuse(tr("With 5 data bits a line makes 1.5 stop bits of 2. Choose 1 stop bit or "
                         "more data bits."));
    PortSettings wanted = settings;
    wanted.StopBits = bits;
    return change(wanted, Setting::StopBits);
}

bool Posix_QextSerialPort::setFlowControl(FlowType flow)
{
    if (!toQt(flow))
        return refuse(tr("There is no flow control number %1. Choose 0 (off), 1 (hardware) or "
                         "2 (XON/XOFF).")
                          .arg(int(flow)));
    PortSettings wanted = settings;
    wanted.FlowControl = flow;
    return change(wanted, Setting::FlowControl);
}

bool Posix_QextSerialPort::setTimeout(long milliseconds)
{
    if (milliseconds < 0)
        return refuse(tr("A time-out of %1 ms cannot be. Choose 0 ms or more.").arg(milliseconds));
    settings.Timeout_Millisec = milliseconds;
    return true;
}

qint64 Posix_QextSerialPort::size() const
{
    return port.isOpen() ? port.bytesAvailable() : 0;
}

qint64 Posix_QextSerialPort::readData(char *data, qint64 maxSize)
{
    if (!port.isOpen()) {
        refuse(tr("The serial port is not open."));
        return -1;
    }
    const bool full = size() >= MaxWaiting;
    const qint64 got = port.read(data, maxSize);
    if (full)
        port.setReadBufferSize(MaxWaiting); // a full port has stopped listening, this wakes it
    return got;
}

qint64 Posix_QextSerialPort::writeData(const char *data, qint64 length)
{
    if (!port.isOpen() || hangingUp) {
        refuse(tr("The serial port is not open."));
        return -1;
    }
    if (port.bytesToWrite() + length > MaxWaiting) {
        refuse(tr("The line at %1 takes no more bytes. Check the cable and the flow control.")
                   .arg(port.portName()));
        return -1;
    }
    const bool lineFull = port.bytesToWrite() > 0;
    const qint64 taken = port.write(data, length);
    if (taken > 0) {
        stuckBytes += stuckBytes > 0 ? taken : 0;
        const std::chrono::nanoseconds start =
            lineFree.hasExpired() ? AdapterLatency : lineFree.remainingTimeAsDuration();
        lineFree.setRemainingTime(start + taken * microsecondsPerByte() * 1us, Qt::PreciseTimer);
        // A caller may block its event loop next, waiting for the answer.
        if (!lineFull)
            port.flush();
    }
    return taken;
}

// Brings one setting of the port to what is wanted.
bool Posix_QextSerialPort::change(const PortSettings &wanted, Setting setting)
{
    // Bytes that still wait would leave under the new setting.
    if (port.isOpen() && !drain())
        return refuse(tr("The line at %1 does not take the bytes that wait, so its settings stay. "
                         "Check the cable and the flow control.")
                          .arg(port.portName()));
    const bool passed = pass(wanted, setting);
    if (!passed)
        qCDebug(lcLink).noquote() << name << port.errorString();
    const QString other = passed ? mismatch(wanted, setting) : notDone(wanted, setting);
    if (!other.isEmpty()) {
        pass(settings, setting);
        return refuse(other);
    }
    settings = wanted;
    return true;
}

bool Posix_QextSerialPort::pass(const PortSettings &wanted, Setting setting)
{
    switch (setting) {
    case Setting::BaudRate:
        return port.setBaudRate(bitsPerSecond(wanted.BaudRate));
    case Setting::DataBits:
        return port.setDataBits(toQt(wanted.DataBits).value());
    case Setting::Parity:
        dropStickParity();
        return port.setParity(toQt(wanted.Parity).value());
    case Setting::StopBits:
        return port.setStopBits(toQt(wanted.StopBits).value());
    case Setting::FlowControl:
        return port.setFlowControl(toQt(wanted.FlowControl).value());
    }
    return false;
}

// QSerialPort never clears this bit, which turns odd parity into mark and even into space.
void Posix_QextSerialPort::dropStickParity()
{
    termios2 t{};
    if (!port.isOpen() || ioctl(port.handle(), TCGETS2, &t) != 0 || !(t.c_cflag & CMSPAR))
        return;
    t.c_cflag &= ~tcflag_t(CMSPAR);
    ioctl(port.handle(), TCSETS2, &t);
}

// What an open port does instead of a setting that it was given; empty when it took it. Drivers
// drop what their hardware cannot do and still report success.
QString Posix_QextSerialPort::mismatch(const PortSettings &wanted, Setting setting) const
{
    termios2 actual{};
    if (!port.isOpen() || ioctl(port.handle(), TCGETS2, &actual) != 0)
        return {};
    bool same = true;
    switch (setting) {
    case Setting::BaudRate: {
        const int rate = bitsPerSecond(wanted.BaudRate);
        if (std::abs(int(actual.c_ospeed) - rate) * 100 > rate * RateTolerancePercent)
            return tr("%1 runs at %2 baud instead of %3. Choose another rate.")
                .arg(name)
                .arg(actual.c_ospeed)
                .arg(rate);
        break;
    }
    case Setting::DataBits:
        same = (actual.c_cflag & CSIZE) == sizeFlags(wanted.DataBits);
        break;
    case Setting::Parity: {
        const tcflag_t flags = parityFlags(wanted.Parity);
        const tcflag_t mask = flags == 0 ? PARENB : PARENB | PARODD | CMSPAR;
        same = (actual.c_cflag & mask) == flags;
        break;
    }
    case Setting::StopBits:
        same = bool(actual.c_cflag & CSTOPB) == (wanted.StopBits == STOP_2);
        break;
    case Setting::FlowControl:
        same = bool(actual.c_cflag & CRTSCTS) == (wanted.FlowControl == FLOW_HARDWARE) &&
               bool(actual.c_iflag & IXON) == (wanted.FlowControl == FLOW_XONXOFF);
        break;
    }
    return same ? QString() : notDone(wanted, setting);
}

QString Posix_QextSerialPort::notDone(const PortSettings &wanted, Setting setting) const
{
    switch (setting) {
    case Setting::BaudRate:
        return tr("%1 does not do %2 baud. Choose another rate.")
            .arg(name)
            .arg(bitsPerSecond(wanted.BaudRate));
    case Setting::DataBits:
        return tr("%1 does not do %2 data bits. Choose another number.")
            .arg(name)
            .arg(5 + int(wanted.DataBits));
    case Setting::Parity:
        return tr("%1 does not do this parity. Choose another parity.").arg(name);
    case Setting::StopBits:
        return tr("%1 does not do this number of stop bits. Choose another number.").arg(name);
    case Setting::FlowControl:
        return tr("%1 does not do this flow control. Choose another one.").arg(name);
    }
    return {};
}

QString Posix_QextSerialPort::node() const
{
    return name.startsWith(u'/') ? name : u"/dev/"_s + name;
}

// False, with the reason, when another program has the port.
bool Posix_QextSerialPort::lockPort()
{
    const devicelock::Outcome outcome = devicelock::takeAt(node(), lock);
    if (outcome == devicelock::Outcome::Held)
        return refuseAsInUse(devicelock::holder(node()));
    // A program has made it its own; this user is not root.
    if (outcome == devicelock::Outcome::Barred && errno == EBUSY) {
        const DeviceUser user = devicelock::holder(node());
        return refuseAsInUse(
            user.pid > 0 ? user : devicelock::lockFileUser(devicelock::lockFileOf(node())));
    }
    if (outcome == devicelock::Outcome::Barred && Advice::isForRoom(errno))
        return refuse(Advice::portNotOpened(node(), errno).words());
    // Root may open what a program has made its own. The mark alone proves nothing: that of a
    // pseudo-terminal outlives its program.
    int exclusive = 0;
    if (lock.isValid() && ioctl(lock.get(), TIOCGEXCL, &exclusive) == 0 && exclusive != 0) {
        if (const QList<DeviceUser> users = devicelock::openedBy(node()); !users.isEmpty()) {
            lock = {};
            return refuseAsInUse(users.first());
        }
    }
    return true;
}

bool Posix_QextSerialPort::refuseAsInUse(const DeviceUser &user)
{
    usedElsewhere = true;
    return refuse(Advice::portInUse(node(), user).words());
}

QString Posix_QextSerialPort::whyNotOpened()
{
    switch (port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return Advice::noSuchPort(node()).words();
    case QSerialPort::PermissionError:
        if (faccessat(AT_FDCWD, QFile::encodeName(node()).constData(), R_OK | W_OK, AT_EACCESS) ==
            0)
            return lockFileKeepsOut();
        return Advice::portForbidden(node(), NodeRights::of(node())).words();
    case QSerialPort::UnsupportedOperationError:
        return tr("%1 is not a serial port. Choose a name such as ttyUSB0.").arg(node());
    default:
        return tr("The serial port %1 cannot be opened: %2.").arg(node(), port.errorString());
    }
}

// What a file that programs of serial ports leave for each other says.
QString Posix_QextSerialPort::lockFileKeepsOut()
{
    // Without a descriptor for it there is no such file either.
    const FileDescriptor another(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    if (!another.isValid())
        return Advice::portNotOpened(node(), errno).words();
    const QString file = devicelock::lockFileOf(node());
    const DeviceUser user = devicelock::lockFileUser(file);
    if (user.pid > 0 && user.program.isEmpty())
        return Advice::portLeftLocked(node(), file).words();
    usedElsewhere = true;
    return Advice::portInUse(node(), user).words();
}

// Waits until all bytes written so far are on the line. False when they did not leave in time, and
// soon when none has left since the last such wait: a window must not wait for each setting.
bool Posix_QextSerialPort::drain()
{
    if (stuckBytes > 0 && !movesAgain())
        return false;
    const bool left = waitForLine();
    stuckBytes = left ? 0 : bytesLeft();
    return left;
}

bool Posix_QextSerialPort::movesAgain()
{
    const QDeadlineTimer deadline(StuckPatience);
    while (!hangingUp) {
        // Without room, writing would count as an error of the line.
        pollfd line{.fd = port.handle(), .events = POLLOUT, .revents = 0};
        if (poll(&line, 1, 0) == 1)
            port.flush();
        if (bytesLeft() < stuckBytes)
            return true;
        if (deadline.hasExpired())
            break;
        std::this_thread::sleep_for(DrainPoll);
    }
    return false;
}

bool Posix_QextSerialPort::waitForLine()
{
    const std::chrono::milliseconds patience(std::min<long>(settings.Timeout_Millisec, MaxDrainMs));
    const QDeadlineTimer deadline(
        std::min<std::chrono::nanoseconds>(lineFree.remainingTimeAsDuration() + patience,
                                           1ms * MaxDrainMs),
        Qt::PreciseTimer);
    while (port.bytesToWrite() > 0) {
        if (hangingUp || !port.waitForBytesWritten(int(deadline.remainingTime())))
            return false;
    }
    while (lineBusy()) {
        if (hangingUp || deadline.hasExpired())
            return false;
        std::this_thread::sleep_for(DrainPoll);
    }
    return true;
}

// Written, and not on the line as far as the kernel knows.
qint64 Posix_QextSerialPort::bytesLeft() const
{
    int queued = 0;
    if (ioctl(port.handle(), TIOCOUTQ, &queued) != 0)
        queued = 0;
    return port.bytesToWrite() + queued;
}

bool Posix_QextSerialPort::lineBusy() const
{
    int queued = 0;
    if (ioctl(port.handle(), TIOCOUTQ, &queued) == 0 && queued > 0)
        return true;
    // Only some drivers know whether their hardware has finished; the clock covers the others.
    unsigned lineStatus = 0;
    if (ioctl(port.handle(), TIOCSERGETLSR, &lineStatus) == 0 && !(lineStatus & TIOCSER_TEMT))
        return true;
    return !lineFree.hasExpired();
}

int Posix_QextSerialPort::microsecondsPerByte() const
{
    // start bit, data, parity, stop bits
    const int bits = 1 + int(settings.DataBits) + 5 + (settings.Parity == PAR_NONE ? 0 : 1) +
                     (settings.StopBits == STOP_1 ? 1 : 2);
    return bits * 1'000'000 / std::max(bitsPerSecond(settings.BaudRate), 1) + 1;
}

void Posix_QextSerialPort::announce()
{
    if (announced)
        return;
    announced = true;
    // Queued, so that bytes which arrive while a setter waits do not reach a receiver inside it.
    emit bytesWait(QPrivateSignal());
}

void Posix_QextSerialPort::deliver()
{
    announced = false;
    const qint64 before = size();
    if (before == 0)
        return;
    emit readyRead();
    if (const qint64 left = size(); left > 0 && left < before)
        announce();
}

bool Posix_QextSerialPort::isHungUp() const
{
    pollfd line{.fd = port.handle(), .events = 0, .revents = 0};
    return poll(&line, 1, 0) == 1;
}

// QSerialPort reports a full line and a hung up one alike; the kernel knows which it is.
void Posix_QextSerialPort::judgeError()
{
    if (isHungUp() || ++strayErrors > MaxStrayErrors)
        loseLine();
}

// A line that hung up reports its error for as long as the port is open, hundreds of thousands
// of times a second; closing it inside that report is not possible.
void Posix_QextSerialPort::loseLine()
{
    if (hangingUp || !port.isOpen())
        return;
    hangingUp = true;
    qCDebug(lcLink).noquote() << port.portName()
                              << (port.error() == QSerialPort::NoError ? u"hung up"_s
                                                                       : port.errorString());
    emit lineLost(QPrivateSignal());
}

// Of a line that was closed meanwhile there is nothing more to say.
void Posix_QextSerialPort::sayFarewell()
{
    if (!hangingUp)
        return;
    close();
    refuse(tr("The serial port %1 is gone. Plug it in and open it again.").arg(port.portName()));
    emit hangUp();
}

bool Posix_QextSerialPort::refuse(const QString &why)
{
    // Who waits for another program's port tries it again and again.
    if (why != std::exchange(reason, why))
        qCWarning(lcLink).noquote() << why;
    return false;
}
