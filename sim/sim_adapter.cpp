// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim_adapter.h"

#include "device/frame.h"
#include "device/pacing.h"

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace sim {

namespace {

constexpr auto TransferPause = 1ms;

Clock sinceNow()
{
    return [start = std::chrono::steady_clock::now()] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - start);
    };
}

SimOptions completed(SimOptions options)
{
    if (!options.clock)
        options.clock = sinceNow();
    return options;
}

} // namespace

// One call's look at the model: holds the lock, lets a device come back whose time has come, and
// at the end tells, without the lock, whether the plug changed and what is to be logged.
class SimAdapter::Look
{
public:
    explicit Look(SimAdapter &owner)
        : adapter(owner)
        , lock(owner.modelLock)
    {
        if (adapter.model.comeBack())
            changed(true);
    }
    Look(const Look &) = delete;
    Look &operator=(const Look &) = delete;
    ~Look() { end(); }

    void changed(bool plugged)
    {
        changes.push_back(plugged);
        adapter.note(adapter.frameLog.note(plugged ? u"plugged"_s : u"unplugged"_s));
        if (!plugged)
            adapter.unplugged.notify_all();
    }

    void end()
    {
        if (!lock.owns_lock())
            return;
        lock.unlock();
        adapter.flushLog();
        for (const bool plugged : std::exchange(changes, {})) {
            if (adapter.onPlugChange)
                adapter.onPlugChange(plugged);
        }
    }

    std::unique_lock<std::mutex> &guard() { return lock; }

private:
    SimAdapter &adapter;
    std::unique_lock<std::mutex> lock;
    std::vector<bool> changes;
};

SimAdapter::SimAdapter(Profile profile, FaultPlan faults, SimOptions options)
    : SimAdapter(std::move(profile), std::move(faults), completed(std::move(options)), Completed())
{
}

SimAdapter::SimAdapter(Profile profile, FaultPlan faults, const SimOptions &options, Completed)
    : paced(options.paced)
    , model(std::move(profile), std::move(faults), options.clock, options.plugged)
    , frameLog(options.clock)
{
}

bool SimAdapter::DeviceNotification(void *window)
{
    return window != nullptr;
}

bool SimAdapter::IsDevOpened()
{
    Look look(*this);
    return opened;
}

bool SimAdapter::SendReport(UCHAR reportId, UCHAR *buf)
{
    {
        Look look(*this);
        if (!transfer(look, reportId, [this, buf](const Fault &fault) {
                const Frame frame = buf ? command::frameAt(buf) : Frame();
                note(frameLog.command(model.write(frame, fault)));
                if (const QString news = model.takeNews(); !news.isEmpty())
                    note(frameLog.note(news));
            }))
            return true;
    }
    if (paced)
        Pacer().sleep(TransferPause);
    return false;
}

int SimAdapter::ReadReport(UCHAR reportId, UCHAR *buf)
{
    Frame report{};
    quint64 session = 0;
    bool read = false;
    {
        Look look(*this);
        session = openedSession;
        read = transfer(look, reportId, [this, &report](const Fault &fault) {
            const FaultyFrame::Report answer = model.read(fault);
            report = answer.bytes;
            note(frameLog.report(answer.bytes, answer.fresh));
        });
    }
    if (paced) {
        Pacer pacer;
        for (int i = 0; i < FrameSize; ++i)
            pacer.sleep(TransferPause);
    }
    if (read) {
        // The usages are fetched one by one: an unplug meanwhile leaves none of them.
        Look look(*this);
        read = model.plugged() && model.session() == session;
    }
    if (!read)
        report = {};
    report[command::offset::ReportId] = reportId;
    MALVOUTIL::Buf_util::CopyBuf(report.data(), buf, FrameSize);
    return read ? 0 : -1;
}

void SimAdapter::CloseDevice()
{
    Look look(*this);
    opened = false;
}

bool SimAdapter::DoFindDev(QString collection, bool open)
{
    Q_UNUSED(collection)
    Look look(*this);
    if (open)
        opened = false;
    const bool there = model.plugged();
    lastProblem = there ? problem : HID_AdpterPacket::NodeProblem();
    if (!there || problem != HID_AdpterPacket::NodeProblem())
        return false;
    if (open) {
        opened = true;
        openedSession = model.session();
    }
    return true;
}

bool SimAdapter::IsDevDead()
{
    Look look(*this);
    return opened && !usable();
}

bool SimAdapter::GetVersion()
{
    Look look(*this);
    hidver.VendorID = hidver.ProductID = hidver.VersionNumber = 0;
    if (!usable())
        return true;
    hidver.VendorID = VendorId;
    hidver.ProductID = model.firmware().profile().product;
    hidver.VersionNumber = model.firmware().profile().release;
    return false;
}

HID_AdpterPacket::NodeProblem SimAdapter::LastProblem() const
{
    const std::lock_guard lock(modelLock);
    return lastProblem;
}

void SimAdapter::plug()
{
    Look look(*this);
    if (model.plug())
        look.changed(true);
}

void SimAdapter::unplug()
{
    Look look(*this);
    if (model.unplug())
        look.changed(false);
}

bool SimAdapter::plugged()
{
    Look look(*this);
    return model.plugged();
}

void SimAdapter::touch(QPoint nativeDesktopPixel)
{
    Look look(*this);
    if (!model.plugged())
        return;
    note(
        frameLog.note(u"touch at %1,%2"_s.arg(nativeDesktopPixel.x()).arg(nativeDesktopPixel.y())));
    model.firmware().touch(nativeDesktopPixel);
}

bool SimAdapter::calibrationKept() const
{
    const std::lock_guard lock(modelLock);
    return model.firmware().calibrationKept();
}

void SimAdapter::setProblem(const HID_AdpterPacket::NodeProblem &nodeProblem)
{
    Look look(*this);
    problem = nodeProblem;
}

void SimAdapter::setLog(std::function<void(const QString &line)> newLog)
{
    const std::lock_guard lock(logLock);
    log = std::move(newLog);
}

void SimAdapter::inspect(const std::function<void(const Firmware &)> &look) const
{
    const std::lock_guard lock(modelLock);
    look(model.firmware());
}

void SimAdapter::change(const std::function<void(Firmware &)> &alter)
{
    const std::lock_guard lock(modelLock);
    alter(model.firmware());
}

void SimAdapter::replay(Replay recording)
{
    const std::lock_guard lock(modelLock);
    model.replay(std::move(recording));
}

quint64 SimAdapter::transfers() const
{
    const std::lock_guard lock(modelLock);
    return model.transfers();
}

// Runs the middle of a transfer unless its fault makes it fail.
bool SimAdapter::transfer(Look &look, UCHAR reportId,
                          const std::function<void(const Fault &)> &exchange)
{
    if (!usable() || reportId != command::ReportId)
        return false;
    const Fault fault = model.beginTransfer();
    if (fault.kind != Fault::Kind::None)
        note(frameLog.note(words(fault, model.transfers())));
    if (fault.kind == Fault::Kind::Unplug) {
        look.changed(false);
        return false;
    }
    if (fault.duration > 0ms) {
        // Other threads go on meanwhile, and what they saw change is theirs to tell.
        const quint64 session = model.session();
        unplugged.wait_for(look.guard(), fault.duration, [this, session] {
            return !model.plugged() || model.session() != session;
        });
        if (!model.plugged() || model.session() != session)
            return false;
    }
    if (fault.kind == Fault::Kind::Stall)
        return false;
    exchange(fault);
    return true;
}

// What was opened before an unplug is dead, also when the device is back.
bool SimAdapter::usable() const
{
    return opened && model.plugged() && openedSession == model.session();
}

void SimAdapter::note(const QStringList &lines)
{
    waitingLines.insert(waitingLines.end(), lines.begin(), lines.end());
}

void SimAdapter::flushLog()
{
    const std::lock_guard oneAtATime(logLock);
    std::vector<QString> lines;
    {
        const std::lock_guard lock(modelLock);
        lines.swap(waitingLines);
    }
    if (!log)
        return;
    for (const QString &line : lines)
        log(line);
}

} // namespace sim
