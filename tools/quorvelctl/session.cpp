// SPDX-License-Identifier: GPL-3.0-or-later

#include "session.h"

#include "capture/recorder.h"
#include "words.h"

#include "device/hid_adapter.h"
#include "device/records.h"
#include "device/usblink.h"

#include <QFileInfo>
#include <QScopedValueRollback>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace ctl {

namespace {

constexpr auto LookPeriod = 100ms;
// A link by USB does not notice by itself that its device is gone.
constexpr auto PlugCheckPeriod = 200ms;
// A new node gets its final permissions a moment after it appears.
constexpr auto ProblemSettles = 400ms;
constexpr auto HangUpPatience = 500ms;
// A question is asked anew behind an answer that must be lost. A frame on a serial line may still
// be changing its rate.
constexpr auto UsbAskPeriod = 1000ms;
constexpr auto SerialAskPeriod = 300ms;

bool isRotationNow(const Frame &report)
{
    const auto rotation = command::RotationReport::decode(report);
    return rotation && rotation->sub == command::rotation::CurrentReply;
}

} // namespace

Session::Session(Surroundings surroundings)
    : around(std::move(surroundings))
    , output(*around.out, *around.err, around.errIsTerminal)
{
}

Session::~Session()
{
    finish();
}

void Session::answer(const QStringList &lines, const QJsonObject &members, int code)
{
    answerCode = code;
    if (!options.json) {
        for (const QString &line : lines)
            output.print(line);
        return;
    }
    QJsonObject document = members;
    document[u"command"_s] = name;
    document[u"ok"_s] = code == Done;
    output.print(document);
}

void Session::tell(const QString &line, const QString &event, QJsonObject members)
{
    if (!options.json) {
        output.print(line);
        return;
    }
    members[u"command"_s] = name;
    members[u"event"_s] = event;
    output.print(members);
}

void Session::connectFrame()
{
    lost = false;
    last.reset();
    unread.clear();
    underWay = 0;
    if (!isSerial())
        adapter = around.adapter(options.usb);
    link = std::make_unique<Link>(adapter);
    connect(link.get(), &Link::received, this,
            [this](const UCHAR *report) { take(command::frameAt(report)); });
    connect(link.get(), &Link::traffic, this, [this](const Traffic &traffic) {
        if (traffic.direction != Traffic::Direction::ToFrame)
            return;
        underWay = std::max(underWay - 1, 0);
        lastTaken = traffic.result == Traffic::Result::Done;
        wake();
    });
    connect(link.get(), &Link::aboutToEnd, this, [this](Link::End how) {
        lost = lost || how == Link::End::DeviceGone;
        wake();
    });
    if (!options.recordFile.isEmpty())
        record();
    if (isSerial())
        connectSerial();
    else
        connectUsb();
}

bool Session::connectNextFrame(QDeadlineTimer end)
{
    finish();
    options.waitsForever = end.isForever();
    options.wait = std::chrono::milliseconds(end.remainingTime());
    try {
        connectFrame();
        return true;
    } catch (const Failure &) {
        if (!end.hasExpired())
            throw;
        return false;
    }
}

// One recording goes through all links of a command.
void Session::record()
{
    if (!recorder) {
        recorder = std::make_unique<capture::Recorder>();
        connect(recorder.get(), &capture::Recorder::losing, this,
                [this](const QString &sentence) { output.complain(u"quorvelctl: "_s + sentence); });
        if (const QString problem = recorder->start(options.recordFile); !problem.isEmpty())
            throw Failure(NoOutput, problem);
    }
    recorder->follow(*link);
}

void Session::connectUsb()
{
    const QDeadlineTimer deadline = options.waitsForever ? QDeadlineTimer(QDeadlineTimer::Forever)
                                                         : QDeadlineTimer(options.wait);
    QDeadlineTimer settled(QDeadlineTimer::Forever);
    while (!link->lookForDevice()) {
        if (adapter->LastProblem() == HID_AdpterPacket::NodeProblem()) {
            settled = QDeadlineTimer(QDeadlineTimer::Forever);
            if (deadline.hasExpired())
                throw usbProblem();
        } else if (settled.isForever()) {
            settled = QDeadlineTimer(ProblemSettles);
        } else if (settled.hasExpired()) {
            throw usbProblem();
        }
        waitFor([] { return false; }, QDeadlineTimer(LookPeriod));
    }
    link->readVersion();
    auto *plugCheck = new QTimer(link.get());
    connect(plugCheck, &QTimer::timeout, link.get(), [this] { link->lookForRemoval(false); });
    plugCheck->start(PlugCheckPeriod);
}

void Session::connectSerial()
{
    const QDeadlineTimer deadline = options.waitsForever ? QDeadlineTimer(QDeadlineTimer::Forever)
                                                         : QDeadlineTimer(options.wait);
    while (!openSerial()) {
        if (serialNode().exists() || deadline.hasExpired())
            throw serialProblem();
        waitFor([] { return false; }, QDeadlineTimer(LookPeriod));
    }
}

bool Session::openSerial()
{
    return link->openSerial(options.port, portSettings());
}

PortSettings Session::portSettings() const
{
    PortSettings settings;
    settings.BaudRate = options.rate.value_or(settings.BaudRate);
    return settings;
}

Failure Session::usbProblem() const
{
    const int error = adapter->LastProblem().error;
    if (error == EACCES || error == EPERM)
        return {NoPermission, link->usbProblem()};
    if (error == EBUSY)
        return {InUse, link->usbProblem()};
    if (error != 0)
        return {Failed, link->usbProblem()};
    if (options.usb.isEmpty())
        return {NoFrame, tr("No touch frame is connected by USB.")};
    return {NoFrame, tr("No touch frame is at %1.").arg(options.usb)};
}

QFileInfo Session::serialNode() const
{
    return QFileInfo(options.port.startsWith(u'/') ? options.port : u"/dev/"_s + options.port);
}

Failure Session::serialProblem() const
{
    const QFileInfo node = serialNode();
    if (!node.exists())
        return {NoFrame, link->serialProblem()};
    if (!node.isReadable() || !node.isWritable())
        return {NoPermission, link->serialProblem()};
    return {link->isInUse() ? InUse : Failed, link->serialProblem()};
}

void Session::finish()
{
    if (!link)
        return;
    link->end();
    link.reset();
}

bool Session::isCurrentGeneration() const
{
    return ::isCurrentGeneration(hidver.VersionNumber);
}

Frame Session::ask(const Frame &question, const IsAnswer &isAnswer, Repeats repeats)
{
    unread.clear();
    return askUntil(QDeadlineTimer(options.timeout), question, isAnswer, repeats);
}

Frame Session::askUntil(QDeadlineTimer deadline, const Frame &question, const IsAnswer &isAnswer,
                        Repeats repeats)
{
    const bool repeatsCount = repeats == Repeats::Taken || isSerial();
    bool doubtful = last && isAnswer(*last) && !repeatsCount;
    for (;;) {
        // The same answer may be an old one. Behind an answer of another kind it is not.
        if (doubtful)
            askUntil(deadline, command::request(command::Rotation, command::rotation::Query),
                     isRotationNow, Repeats::Ignored);
        doubtful = false;
        post(question);
        const QDeadlineTimer again(isSerial() ? SerialAskPeriod : UsbAskPeriod);
        while (const auto said = report(std::min(again, deadline))) {
            if (!isAnswer(said->frame))
                continue;
            if (said->isNew || repeatsCount)
                return said->frame;
            doubtful = true;
            break;
        }
        if (deadline.hasExpired())
            throw overdue();
    }
}

std::optional<Session::Report> Session::report(QDeadlineTimer deadline)
{
    if (!waitFor([this] { return !unread.empty(); }, deadline))
        return {};
    const Report oldest = unread.front();
    unread.pop_front();
    return oldest;
}

Frame Session::next(const IsAnswer &isAnswer)
{
    const QDeadlineTimer deadline(options.timeout);
    while (const auto said = report(deadline)) {
        if (said->isNew && isAnswer(said->frame))
            return said->frame;
    }
    throw overdue();
}

void Session::send(const Frame &frame, const QString &what)
{
    // A transfer that fails may have arrived.
    unconfirmed = what;
    post(frame);
    if (!waitFor([this] { return underWay == 0; }, QDeadlineTimer(options.timeout)) || !lastTaken)
        throw overdue();
}

bool Session::sendAtLast(const Frame &frame)
{
    if (!link || lost)
        return false;
    post(frame);
    post(command::request(command::Rotation, command::rotation::Query));
    unread.clear();
    const auto hasAnswered = [this] {
        return std::any_of(unread.begin(), unread.end(), [](const Report &report) {
            return report.isNew && isRotationNow(report.frame);
        });
    };
    runLoop([&] { return lost || hasAnswered(); }, QDeadlineTimer(options.timeout));
    return hasAnswered();
}

std::optional<QString> Session::readLine(QDeadlineTimer deadline)
{
    QByteArray line;
    bool over = false;
    QSocketNotifier readable(around.input, QSocketNotifier::Read);
    connect(&readable, &QSocketNotifier::activated, this, [&] {
        char byte = 0;
        over = ::read(around.input, &byte, 1) != 1 || byte == '\n';
        if (!over)
            line += byte;
        wake();
    });
    if (!waitFor([&over] { return over; }, deadline))
        return {};
    return QString::fromLocal8Bit(line);
}

bool Session::waitFor(const std::function<bool()> &done, QDeadlineTimer deadline)
{
    throwIfOver();
    const bool isDone =
        runLoop([&] { return done() || lost || signalNumber != 0; }, deadline) && done();
    throwIfOver();
    return isDone;
}

bool Session::runLoop(const std::function<bool()> &done, QDeadlineTimer deadline)
{
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop inner;
        const QScopedValueRollback waiting(loop, &inner);
        QTimer timer;
        timer.setSingleShot(true);
        timer.setTimerType(Qt::PreciseTimer);
        connect(&timer, &QTimer::timeout, &inner, &QEventLoop::quit);
        if (!deadline.isForever())
            timer.start(int(deadline.remainingTime()));
        inner.exec();
    }
    return true;
}

void Session::interrupt(int signal)
{
    signalNumber = signal;
    wake();
}

void Session::wake()
{
    if (loop)
        loop->quit();
}

void Session::throwIfOver() const
{
    if (signalNumber != 0)
        throw Failure(SignalBase + signalNumber, tr("Ended before it was done."));
    if (!lost)
        return;
    if (isSerial())
        throw Failure(NoFrame, link->serialProblem());
    throw Failure(NoFrame, tr("The touch frame was unplugged."));
}

Failure Session::overdue(const QString &otherwise)
{
    // Perhaps it is gone. A serial line says so a moment later.
    if (!lastTaken && isSerial())
        runLoop([this] { return lost; }, QDeadlineTimer(HangUpPatience));
    link->lookForRemoval(false);
    throwIfOver();
    if (isSerial() && !serialNode().exists())
        return {NoFrame, tr("The serial port %1 is gone.").arg(options.port)};
    if (!lastTaken)
        return {Failed, tr("The touch frame does not take commands. Unplug it and plug it in "
                           "again.")};
    if (!otherwise.isEmpty())
        return {NoAnswer, otherwise};
    return {NoAnswer, tr("The touch frame did not answer within %1 s.")
                          .arg(std::chrono::duration<double>(options.timeout).count())};
}

void Session::take(const Frame &report)
{
    unread.push_back({report, isSerial() || (last && report != *last)});
    last = report;
    wake();
}

void Session::post(const Frame &frame)
{
    lastTaken = true;
    ++underWay;
    link->send(frame.data());
}

} // namespace ctl
