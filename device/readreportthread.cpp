// SPDX-License-Identifier: GPL-3.0-or-later

#include "readreportthread.h"

#include "link_log.h"
#include "malvoutil.h"

#include <QScopedValueRollback>

using namespace std::chrono_literals;

namespace {
constexpr auto CyclePause = 3ms;
constexpr QChar CycleFinished(1);
} // namespace

ReadReportThread::ReadReportThread(UCHAR *readBuf)
    : ReadBuf(readBuf)
{
    connect(this, &ReadReportThread::reportWaits, this, &ReadReportThread::deliver,
            Qt::QueuedConnection);
}

ReadReportThread::~ReadReportThread()
{
    finish();
}

void ReadReportThread::setHIDAdapter(HID_AdpterPacket::HID_Adapter *adapter, UCHAR reportId)
{
    HID_Util = adapter;
    reportID = reportId;
}

void ReadReportThread::setReadBuf(UCHAR *readBuf)
{
    ReadBuf = readBuf;
}

void ReadReportThread::discardWaiting()
{
    const std::lock_guard lock(waitingLock);
    waiting.clear();
}

quint64 ReadReportThread::droppedFrames() const
{
    const std::lock_guard lock(waitingLock);
    return dropped;
}

void ReadReportThread::run()
{
    while (!stopRequested()) {
        Frame frame{};
        HID_Util->ReadReport(reportID, frame.data());
        enqueue(frame);
        emit reportWaits(QPrivateSignal());
        pause(CyclePause);
    }
}

void ReadReportThread::enqueue(const Frame &frame)
{
    bool report = false;
    {
        const std::lock_guard lock(waitingLock);
        if (waiting.size() < MaxWaiting) {
            dropping = false;
        } else {
            waiting.pop_front();
            ++dropped;
            report = !dropping;
            dropping = true;
        }
        waiting.push_back(frame);
    }
    if (report)
        qCWarning(lcLink, "%zu reports of the touch frame wait unread: the oldest are dropped",
                  MaxWaiting);
}

// Moves the oldest waiting report into the read buffer; false when none waits.
bool ReadReportThread::takeFrame()
{
    const std::lock_guard lock(waitingLock);
    if (waiting.empty())
        return false;
    MALVOUTIL::Buf_util::CopyBuf(waiting.front().data(), ReadBuf, FrameSize);
    waiting.pop_front();
    return true;
}

void ReadReportThread::deliver()
{
    // In the event loop of a receiver: whoever delivers its report goes on behind it.
    if (delivering)
        return;
    const QScopedValueRollback guard(delivering, true);
    while (takeFrame())
        emit ReadOver(CycleFinished);
}
