#include "sim/usbsession.h"

#include "device/filedescriptor.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace sim {

namespace {

QString calibrationName(Firmware::Calibration state)
{
    switch (state) {
    case Firmware::Calibration::Idle:
        return u"idle"_s;
    case Firmware::Calibration::Offered:
        return u"offered"_s;
    case Firmware::Calibration::Waiting:
        return u"waiting"_s;
    case Firmware::Calibration::Ended:
        return u"ended"_s;
    }
    return {};
}

QString keptWords(const std::optional<KeptCalibration> &kept)
{
    if (!kept)
        return u"kept=0"_s;
    const ScreenGeometry &screen = kept->screen;
    return u"kept=1 kept-deviation=%1,%2 kept-screen=%3,%4,%5,%6,%7,%8"_s.arg(kept->deviationX)
        .arg(kept->deviationY)
        .arg(screen.x)
        .arg(screen.y)
        .arg(screen.width)
        .arg(screen.height)
        .arg(screen.desktopWidth)
        .arg(screen.desktopHeight);
}

QString gestureWords(const std::optional<GestureSettings> &gestures)
{
    if (!gestures)
        return u"gestures=none"_s;
    return u"gestures=%1,%2,%3,%4,%5,%6"_s.arg(gestures->allEnabled)
        .arg(gestures->rightButtonEnabled)
        .arg(gestures->rightButtonDuration)
        .arg(gestures->rightButtonRange)
        .arg(gestures->wheelEnabled)
        .arg(gestures->wheelSensitivity);
}

} // namespace

UsbSession::UsbSession(Profile profile, FaultPlan faults, const Clock &clock,
                       const QString &controllerDirectory)
    : frame(std::move(profile), std::move(faults), clock, false)
    , log(clock)
    , vhci(controllerDirectory)
{
    comeback.setSingleShot(true);
    comeback.setTimerType(Qt::PreciseTimer);
    connect(&comeback, &QTimer::timeout, this, &UsbSession::comeBack);
}

UsbSession::~UsbSession()
{
    release();
}

QString UsbSession::plug()
{
    comeback.stop();
    if (frame.plugged())
        return tr("it is plugged already");
    if (QString problem = attach(); !problem.isEmpty())
        return problem;
    frame.plug();
    emit logged(log.note(u"plugged into port %1"_s.arg(*vhci.number())));
    return {};
}

bool UsbSession::unplug()
{
    comeback.stop();
    release();
    if (!frame.unplug())
        return false;
    emit logged(log.note(u"unplugged"_s));
    return true;
}

bool UsbSession::touch(QPoint pixel)
{
    if (!frame.plugged())
        return false;
    emit logged(log.note(u"touch at %1,%2"_s.arg(pixel.x()).arg(pixel.y())));
    frame.firmware().touch(pixel);
    return true;
}

QString UsbSession::state() const
{
    const Firmware &firmware = frame.firmware();
    const std::optional<int> baud = firmware.baudCode();
    return u"plugged=%1 calibration=%2 step=%3 %4 rotation=%5 %6 baud=%7 unknown=%8 queued=%9"_s
               .arg(frame.plugged() ? 1 : 0)
               .arg(calibrationName(firmware.calibration()))
               .arg(firmware.calibrationStep())
               .arg(keptWords(firmware.keptCalibration()))
               .arg(firmware.rotation())
               .arg(gestureWords(firmware.gestures()), baud ? QString::number(*baud) : u"none"_s)
               .arg(firmware.unknownCommands())
               .arg(firmware.queuedReplies()) +
           u" transfers=%1 uptime-ms=%2"_s.arg(frame.transfers()).arg(firmware.uptime().count());
}

// The kernel may ask the device something before this returns; it is answered by the event loop.
QString UsbSession::attach()
{
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return tr("no socket pair for the device: %1")
            .arg(QString::fromLocal8Bit(std::strerror(errno)));
    }
    FileDescriptor ours(ends[0]);
    const FileDescriptor hosts(ends[1]);
    if (QString problem = vhci.attach(hosts.get()); !problem.isEmpty())
        return problem;
    device = std::make_unique<UsbDevice>(frame, log, std::move(ours));
    connect(device.get(), &UsbDevice::logged, this, &UsbSession::logged);
    // Queued: the device is not to vanish while it speaks. By then it may have been replaced.
    ++attachments;
    const auto ifStillThere = [this, number = attachments](auto action) {
        if (device && attachments == number)
            action();
    };
    connect(
        device.get(), &UsbDevice::pulled, this,
        [this, ifStillThere] { ifStillThere([this] { pulled(); }); }, Qt::QueuedConnection);
    connect(
        device.get(), &UsbDevice::lost, this,
        [this, ifStillThere](const QString &reason) {
            ifStillThere([this, &reason] { lost(reason); });
        },
        Qt::QueuedConnection);
    return {};
}

void UsbSession::release()
{
    if (device)
        device->hangUp();
    vhci.detach();
    device.reset();
}

void UsbSession::pulled()
{
    release();
    emit logged(log.note(u"unplugged"_s));
    waitForComeback();
}

void UsbSession::lost(const QString &reason)
{
    release();
    frame.unplug();
    emit logged(log.note(u"unplugged: "_s + reason));
}

void UsbSession::waitForComeback()
{
    if (const auto wait = frame.untilBack())
        comeback.start(*wait);
}

void UsbSession::comeBack()
{
    if (!frame.comeBack()) {
        waitForComeback();
        return;
    }
    if (const QString problem = attach(); !problem.isEmpty()) {
        frame.unplug();
        emit logged(log.note(u"could not be plugged again: "_s + problem));
        return;
    }
    emit logged(log.note(u"plugged into port %1"_s.arg(*vhci.number())));
}

} // namespace sim
