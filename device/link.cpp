// SPDX-License-Identifier: GPL-3.0-or-later

#include "link.h"

#include "link_log.h"
#include "records.h"
#include "seriallink.h"
#include "usblink.h"

#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <utility>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr auto CheckPeriod = 500ms;
// The kernel tells of a new device before its node exists.
constexpr auto RetryPeriod = 20ms;
constexpr int RetriesAfterPlug = 75;
// A new node gets its final permissions a moment after it appears.
constexpr qint64 ProblemSettlesMs = 400;
constexpr auto ShortestSleep = 1s;

std::chrono::nanoseconds timeOf(clockid_t clock)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// How long the machine has slept since it was started: one of its clocks stands still then.
std::chrono::nanoseconds sleepOfMachine()
{
    return timeOf(CLOCK_BOOTTIME) - timeOf(CLOCK_MONOTONIC);
}

} // namespace

Link::Link(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter, QObject *parent)
    : QObject(parent)
    , usbLink(new UsbLink(std::move(adapter), this))
    , serialLink(new SerialLink(this))
    , timer(new QTimer(this))
    , retryTimer(new QTimer(this))
{
    connect(usbLink, &UsbLink::received, this, &Link::onUsbReport);
    connect(usbLink, &UsbLink::traffic, this, &Link::traffic);
    connect(serialLink, &SerialLink::traffic, this, &Link::traffic);
    connect(serialLink, &SerialLink::readable, this, &Link::receiveSerial);
    connect(serialLink, &SerialLink::lost, this, &Link::onSerialLost);
    timer->setObjectName(u"checkTimer"_s);
    timer->setInterval(CheckPeriod);
    connect(timer, &QTimer::timeout, this, &Link::check);
    retryTimer->setInterval(RetryPeriod);
    connect(retryTimer, &QTimer::timeout, this, &Link::retrySearch);
}

Link::~Link()
{
    end();
}

void Link::start()
{
    slept = sleepOfMachine();
    timer->start();
    lookForDevice();
}

void Link::end()
{
    timer->stop();
    retryTimer->stop();
    if (!isLinked())
        return;
    finishLink(End::Closed);
    usbLink->close();
    serialLink->close();
    connect_sta = NotConnected;
}

void Link::check()
{
    lookForSleep();
    if (lookForDevice() || isLinked() || !portWish)
        return;
    const PortWish wish = *portWish;
    openSerial(wish.name, wish.settings);
}

void Link::lookForSleep()
{
    const auto before = std::exchange(slept, sleepOfMachine());
    if (connect_sta == UsbConnected && slept - before >= ShortestSleep)
        emit wokeUp();
}

Link::State Link::state() const
{
    State now;
    now.kind = connect_sta;
    now.port = connect_sta == UsbConnected ? usbLink->node() : openPort();
    if (!announcedProblem.isEmpty())
        now.problem = announcedProblem;
    else if (connect_sta != UsbConnected)
        now.problem = serialLink->problem();
    return now;
}

void Link::setKind(Kind kind)
{
    connect_sta = kind;
    tellState();
}

void Link::tellState()
{
    const State now = state();
    if (now == told)
        return;
    told = now;
    emit stateChanged(now);
}

// Lets everybody finish what they began with the device, and forget what it said.
void Link::finishLink(End how)
{
    {
        const QScopedValueRollback guard(deviceGone, how == End::DeviceGone);
        emit aboutToEnd(how);
    }
    if (how != End::DeviceGone && connect_sta == UsbConnected && !usbLink->flush())
        qCWarning(lcLink, "the touch frame takes nothing any more: what waits for it is dropped");
    // The receivers behind one that runs an event loop are still to be handed this frame.
    if (handedOut)
        std::fill_n(handedOut, FrameSize, UCHAR(0));
    heldBack.clear();
    hidver = {};
    emit ended();
}

void Link::send(const UCHAR *frame)
{
    if (!deviceGone && connect_sta == UsbConnected)
        usbLink->send(frame);
    else if (!deviceGone && connect_sta == SerialOpen)
        serialLink->send(frame);
    else
        emit traffic({Traffic::Direction::ToFrame, Traffic::Over::None, Traffic::Result::Dropped,
                      command::frameAt(frame)});
}

bool Link::lookForDevice()
{
    if (connect_sta == UsbConnected)
        return false;
    const bool found = usbLink->open();
    noteProblem();
    if (!found)
        return false;
    if (connect_sta == SerialOpen)
        finishLink(End::Replaced);
    // What went wrong with a port is no news any more.
    serialLink->forgetProblem();
    portWish.reset();
    setKind(UsbConnected);
    emit usbConnected();
    return true;
}

void Link::lookForRemoval(bool force)
{
    if (connect_sta == SerialOpen)
        serialLink->lookForHangUp();
    if (connect_sta != UsbConnected || (!force && usbLink->isPlugged()))
        return;
    finishLink(End::DeviceGone);
    usbLink->close();
    if (serialLink->isOpen()) {
        // Nobody listens to it any more.
        serialLink->close(tr("The frame on USB that had taken over from the serial port %1 is "
                             "gone. Open the port again to use it.")
                              .arg(serialLink->portName()));
    }
    setKind(NotConnected);
}

bool Link::readVersion()
{
    usbLink->readVersion();
    if (isCurrentGeneration(hidver.VersionNumber))
        return true;
    hidver.SVNNUM = hidver.CHECKSUM = hidver.P_FID = hidver.P_DATE = hidver.P_NUM = 0;
    return false;
}

bool Link::lacksVersion() const
{
    return connect_sta == UsbConnected && isCurrentGeneration(hidver.VersionNumber) &&
           (hidver.SVNNUM | hidver.CHECKSUM | hidver.P_FID | hidver.P_DATE | hidver.P_NUM) == 0;
}

bool Link::takeVersion(const UCHAR *report)
{
    if (connect_sta != UsbConnected || fromSerial)
        return false;
    const auto record = command::FirmwareRecord::decode(command::frameAt(report));
    if (!record)
        return false;
    const HID_VER before = hidver;
    hidver.SVNNUM = record->revision;
    hidver.CHECKSUM = record->checksum;
    hidver.P_FID = record->family;
    hidver.P_DATE = record->date;
    hidver.P_NUM = record->number;
    return hidver != before;
}

void Link::deviceAdded()
{
    if (lookForDevice() || connect_sta == UsbConnected)
        return;
    retriesLeft = RetriesAfterPlug;
    retryTimer->start();
}

void Link::retrySearch()
{
    if (lookForDevice() || connect_sta == UsbConnected || --retriesLeft <= 0)
        retryTimer->stop();
}

void Link::deviceRemoved()
{
    lookForRemoval(true);
}

void Link::eventsLost()
{
    lookForRemoval(false);
    deviceAdded();
}

// A problem is announced once for each change, and only when it stays so.
void Link::noteProblem()
{
    const QString problem = usbLink->problem();
    if (problem != seenProblem) {
        seenProblem = problem;
        problemSince.start();
    }
    if (problem == announcedProblem)
        return;
    if (!problem.isEmpty() && !problemSince.hasExpired(ProblemSettlesMs))
        return;
    announcedProblem = problem;
    tellState();
}

bool Link::openSerial(const QString &portName, const PortSettings &settings)
{
    const bool opened = serialLink->open(portName);
    portWish.reset();
    if (!opened) {
        if (isLinked())
            return false;
        if (serialLink->isInUse())
            portWish = {portName, settings};
        setKind(SerialFailed);
        return false;
    }
    if (connect_sta == UsbConnected) {
        finishLink(End::Replaced);
        usbLink->close();
    }
    connect_sta = SerialOpen;
    serialLink->toMyComSetting(settings);
    tellState();
    return true;
}

void Link::closeSerial()
{
    if (isLinked())
        finishLink(End::Closed);
    usbLink->close();
    serialLink->close();
    portWish.reset();
    setKind(SerialClosed);
}

void Link::closePort()
{
    if (connect_sta == UsbConnected)
        serialLink->close();
    else
        closeSerial();
}

void Link::useUsb()
{
    closePort();
    lookForDevice();
}

QString Link::openPort() const
{
    return serialLink->isOpen() ? serialLink->portName() : QString();
}

QString Link::serialProblem() const
{
    return serialLink->problem();
}

QString Link::usbProblem() const
{
    return connect_sta == UsbConnected ? QString() : usbLink->problem();
}

bool Link::isInUse() const
{
    return !isLinked() && (usbLink->isInUse() || portWish);
}

void Link::onUsbReport(UCHAR *report)
{
    if (handedOut) {
        heldBack.push_back(command::frameAt(report));
        return;
    }
    handOut(report);
    catchUp();
}

void Link::receiveSerial()
{
    if (!handedOut)
        catchUp();
}

void Link::handOut(UCHAR *frame)
{
    const QScopedValueRollback guard(handedOut, frame);
    emit received(frame);
}

// Hands out what came while a receiver ran an event loop of its own, and what waits in the port.
void Link::catchUp()
{
    for (;;) {
        if (!heldBack.empty()) {
            Frame report = heldBack.front();
            heldBack.pop_front();
            handOut(report.data());
        } else if (UCHAR *frame = serialLink->takeFrame()) {
            const QScopedValueRollback source(fromSerial, true);
            handOut(frame);
        } else {
            return;
        }
    }
}

void Link::onSerialLost()
{
    if (connect_sta == SerialOpen) {
        finishLink(End::DeviceGone);
        connect_sta = SerialClosed;
    }
    told = state();
    emit stateChanged(told);
}
