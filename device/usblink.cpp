// SPDX-License-Identifier: GPL-3.0-or-later

#include "usblink.h"

#include "advice.h"
#include "frame.h"
#include "link_log.h"
#include "linux_hid_adapter.h"
#include "noderights.h"
#include "readreportthread.h"
#include "writereportthread.h"

#include <QTimer>

#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The text that older frames wanted for the interface of their reports.
const QString Collection = u"col03"_s;
constexpr QChar ReadFinished(1);
constexpr QChar WriteFailed(1);
constexpr auto EndsWithin = std::chrono::milliseconds(1);
// Time for what has come during a wait. The loop serves timers before the display.
constexpr auto TurnRest = std::chrono::milliseconds(10);
constexpr auto LookPeriod = std::chrono::milliseconds(2);
constexpr auto ThreadRetry = std::chrono::milliseconds(100);

} // namespace

UsbLink::UsbLink(std::shared_ptr<HID_AdpterPacket::HID_Adapter> adapter, QObject *parent)
    : QObject(parent)
    , HID_Util03(std::move(adapter))
    , turnEnd(new QTimer(this))
{
    turnEnd->setSingleShot(true);
    if (!HID_Util03)
        HID_Util03 = std::make_shared<HID_AdpterPacket::OP_HID_Adapter>();
    readThread03 = std::make_unique<ReadReportThread>(RecvBuf03.data());
    writeThread03 = std::make_unique<writereportthread>(SendBuf03.data());
    connect(readThread03.get(), &ReadReportThread::ReadOver, this, &UsbLink::OnRecv03);
    connect(writeThread03.get(), &writereportthread::WriteOver, this, &UsbLink::OnWriteOver);
    connect(writeThread03.get(), &QThread::finished, this, &UsbLink::lookAtWriter);
}

UsbLink::~UsbLink()
{
    close();
}

void UsbLink::registerForNotification(void *window)
{
    HID_Util03->DeviceNotification(window);
}

bool UsbLink::open()
{
    if (opened)
        return false;
    lacksThread = false;
    if (!HID_Util03->DoFindDev(Collection, true) || !HID_Util03->IsDevOpened())
        return false;
    readThread03->setHIDAdapter(HID_Util03.get(), command::ReportId);
    lacksThread = !readThread03->start(QThread::InheritPriority);
    if (lacksThread) {
        HID_Util03->CloseDevice();
        return false;
    }
    writeThread03->setHIDAdapter(HID_Util03.get(), command::ReportId);
    opened = true;
    return true;
}

bool UsbLink::isPlugged()
{
    return HID_Util03->DoFindDev(Collection, false) && !HID_Util03->IsDevDead();
}

void UsbLink::close()
{
    if (!opened)
        return;
    opened = false;
    readThread03->terminate();
    readThread03->wait();
    writeThread03->terminate();
    writeThread03->wait();
    HID_Util03->CloseDevice();
    readThread03->discardWaiting();
    tellSent();
    for (const Frame &frame : std::exchange(outbox, {}))
        tell(Traffic::Direction::ToFrame, Traffic::Result::Dropped, frame);
}

void UsbLink::send(const UCHAR *frame)
{
    if (outbox.size() >= MaxOutbox) {
        qCWarning(lcLink, "%zu frames wait for the touch frame: one more is dropped", MaxOutbox);
        tell(Traffic::Direction::ToFrame, Traffic::Result::Dropped, command::frameAt(frame));
        return;
    }
    // The next frame waits for the last one to be out, but neither for a device that hangs nor for
    // several frames.
    const bool othersWait = !outbox.empty();
    outbox.push_back(command::frameAt(frame));
    if (!othersWait && waitForWriter())
        sendNext();
}

// True when the writer has ended, as soon as it has; false when there is no patience left.
bool UsbLink::waitForWriter()
{
    if (!turnEnd->isActive())
        turn.setRemainingTime(TurnPatience);
    const bool ended = writeThread03->wait(turn);
    turnEnd->start(TurnRest);
    return ended;
}

bool UsbLink::flush()
{
    while (writeThread03->wait(QDeadlineTimer(SendPatience))) {
        tellSent();
        if (outbox.empty())
            return true;
        if (!sendNext())
            return false;
    }
    return false;
}

// Hands the first waiting frame to the writer, which has ended. False when that cannot be started
// now; the frame waits on.
bool UsbLink::sendNext()
{
    tellSent();
    SendBuf03 = outbox.front();
    underWay = writeThread03->start(QThread::InheritPriority);
    if (underWay)
        outbox.pop_front();
    else
        QTimer::singleShot(ThreadRetry, this, &UsbLink::sendAgain);
    return underWay;
}

void UsbLink::sendAgain()
{
    if (!underWay && !outbox.empty())
        sendNext();
}

// What became of the frame that the writer, which has ended, was handed last.
void UsbLink::tellSent()
{
    if (!std::exchange(underWay, false))
        return;
    switch (writeThread03->outcome()) {
    case writereportthread::Outcome::NotTried:
        tell(Traffic::Direction::ToFrame, Traffic::Result::Dropped, SendBuf03);
        break;
    case writereportthread::Outcome::Failed:
        tell(Traffic::Direction::ToFrame, Traffic::Result::Failed, SendBuf03);
        break;
    case writereportthread::Outcome::Sent:
        tell(Traffic::Direction::ToFrame, Traffic::Result::Done, SendBuf03);
        break;
    }
}

void UsbLink::tell(Traffic::Direction direction, Traffic::Result result, const Frame &frame)
{
    emit traffic({direction, Traffic::Over::Usb, result, frame});
}

void UsbLink::readVersion()
{
    HID_Util03->GetVersion();
}

QString UsbLink::node() const
{
    return opened ? HID_Util03->Node() : QString();
}

QString UsbLink::problem() const
{
    if (lacksThread)
        return Advice::noThread().words();
    const HID_AdpterPacket::NodeProblem found = HID_Util03->LastProblem();
    if (found.node.isEmpty())
        return {};
    if (found.error == EBUSY)
        return Advice::frameInUse(found.node, found.user).words();
    if (found.error == EACCES || found.error == EPERM)
        return Advice::frameForbidden(found.node, found.error, NodeRights::of(found.node)).words();
    return Advice::frameNotOpened(found.node, found.error).words();
}

bool UsbLink::isInUse() const
{
    return HID_Util03->LastProblem().error == EBUSY;
}

void UsbLink::OnRecv03(QChar status)
{
    if (!opened || status != ReadFinished)
        return;
    const bool ours = RecvBuf03[command::offset::ReportId] == command::ReportId;
    tell(Traffic::Direction::FromFrame, ours ? Traffic::Result::Done : Traffic::Result::Dropped,
         RecvBuf03);
    if (ours)
        emit received(RecvBuf03.data());
}

void UsbLink::OnWriteOver(QChar status)
{
    if (opened && status == WriteFailed)
        qCWarning(lcLink, "a frame could not be sent to the touch frame");
}

// A thread says that it has ended just before it has, and may have been started anew meanwhile.
void UsbLink::lookAtWriter()
{
    if (!underWay)
        return;
    if (!writeThread03->wait(QDeadlineTimer(EndsWithin)))
        QTimer::singleShot(LookPeriod, this, &UsbLink::lookAtWriter);
    else if (outbox.empty())
        tellSent();
    else
        sendNext();
}
