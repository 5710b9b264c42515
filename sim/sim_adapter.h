// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/framelog.h"
#include "device/hid_adapter.h"
#include "faultyframe.h"

#include <QPoint>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

namespace sim {

struct SimOptions
{
    bool plugged = true;
    bool paced = true; // false: transfers take no time (stalled and late ones still do)
    Clock clock; // decides when an unplugged device comes back; empty: the time since construction
};

// The simulated frame inside the program's own process: the same calls, results and times as a
// frame on hiddev. Any thread may call anything; a transfer that hangs keeps nobody else waiting.
//
// An unplug ends every transfer under way, and what was open then fails until it is found and
// opened again, also when the device is back by then.
class SimAdapter final : public HID_AdpterPacket::HID_Adapter
{
public:
    explicit SimAdapter(Profile profile, FaultPlan faults = {}, SimOptions options = {});

    bool DeviceNotification(void *window) override;
    bool IsDevOpened() override;
    bool SendReport(UCHAR reportId, UCHAR *buf) override;
    int ReadReport(UCHAR reportId, UCHAR *buf) override;
    void CloseDevice() override;
    // False with a problem set: like a node that may not be opened.
    bool DoFindDev(QString collection, bool open) override;
    bool IsDevDead() override;
    bool GetVersion() override;
    HID_AdpterPacket::NodeProblem LastProblem() const override;

    void plug();
    void unplug();
    bool plugged();
    // A finger at a native pixel of the desktop. Nothing happens while unplugged.
    void touch(QPoint nativeDesktopPixel);
    bool calibrationKept() const;

    // A node that is there but may not be opened; an empty one takes the problem away.
    void setProblem(const HID_AdpterPacket::NodeProblem &problem);
    // Every frame and fault in words, one line a call and one call at a time, from whichever
    // thread transferred. What is called must not call this object.
    void setLog(std::function<void(const QString &line)> log);
    // Shows or changes the model under its lock; what is called must not call this object.
    void inspect(const std::function<void(const Firmware &)> &look) const;
    void change(const std::function<void(Firmware &)> &alter);
    // Says from now on what a recording says.
    void replay(Replay recording);
    // Transfers so far, as the fault plan counts them.
    quint64 transfers() const;

    // Called without any lock from whichever thread saw the change. Set it before other threads
    // call this object.
    std::function<void(bool plugged)> onPlugChange;

private:
    class Look;
    struct Completed
    {
    };

    SimAdapter(Profile profile, FaultPlan faults, const SimOptions &options, Completed);

    bool transfer(Look &look, UCHAR reportId, const std::function<void(const Fault &)> &exchange);
    bool usable() const;
    void note(const QStringList &lines);
    void flushLog();

    const bool paced;
    mutable std::mutex modelLock; // protects all below up to lastProblem
    std::condition_variable unplugged;
    FaultyFrame model;
    FrameLog frameLog;
    std::vector<QString> waitingLines;
    bool opened = false;
    quint64 openedSession = 0;
    HID_AdpterPacket::NodeProblem problem;
    HID_AdpterPacket::NodeProblem lastProblem; // of the last search
    std::mutex logLock; // protects log; taken before modelLock, never after it
    std::function<void(const QString &line)> log;
};

} // namespace sim
