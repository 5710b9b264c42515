// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cells.h"
#include "tests/support/settingshome.h"

#include <QDir>
#include <QJsonObject>
#include <QTest>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <utility>

namespace tried {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// How long the GUI thread does nothing at most, and a thread beside it: so long the machine itself
// had no time for this program.
class Heartbeat : public QObject
{
public:
    explicit Heartbeat(std::function<void()> onBeat)
        : deed(std::move(onBeat))
        , beside([this] {
            QElapsedTimer time;
            while (!ended) {
                time.start();
                std::this_thread::sleep_for(Period);
                machineMs = std::max(machineMs.load(), int(time.elapsed()));
            }
        })
    {
        sinceBeat.start();
        startTimer(Period, Qt::PreciseTimer);
    }
    ~Heartbeat() override
    {
        ended = true;
        beside.join();
    }
    int longestMs = 0;
    std::atomic<int> machineMs = 0;

protected:
    void timerEvent(QTimerEvent *) override
    {
        longestMs = std::max(longestMs, int(sinceBeat.elapsed()));
        sinceBeat.start();
        deed();
    }

private:
    static constexpr auto Period = 20ms;

    std::function<void()> deed;
    QElapsedTimer sinceBeat;
    std::atomic<bool> ended = false;
    std::thread beside;
};

// One window, one fault.
class Run
{
public:
    Run(const QString &link, Window theWindow, Fault theFault, int theTransfer)
        : window(std::move(theWindow))
        , fault(std::move(theFault))
        , transfer(theTransfer)
    {
        QDir::setCurrent(home.folder());
        sim::Profile profile = TriedFrame::usual();
        if (fault.name.endsWith(u"finished"_s))
            profile.earlyRequest = sim::EarlyRequest::Finishes;
        const bool isLine = link == u"serial"_s;
        const int step = fault.stepOn(link) > 0 ? fault.stepOn(link) : LastTransfer;
        const int last = isLine ? window.transfersOnALine : LastTransfer;
        QStringList lines;
        for (int at = transfer; at == transfer || at <= last; at += step) {
            if (!fault.line.isEmpty())
                lines += fault.line.arg(at);
            lastFault = at + fault.lasts - 1;
        }
        const auto plan = sim::FaultPlan::parse(lines.join(u'\n'), u"plan"_s, &problem,
                                                isLine ? sim::FaultPlan::Link::Serial
                                                       : sim::FaultPlan::Link::Usb);
        if (!plan)
            return;
        if (isLine)
            frame = std::make_unique<LineTriedFrame>(profile, *plan, home.filePath(u"frame"_s));
        else
            frame = std::make_unique<UsbTriedFrame>(profile, *plan);
        main = std::make_unique<MainWindow>(frame->adapter());
        frame->attachTo(*main);
        QObject::connect(main->findChild<Link *>(), &Link::traffic, main.get(),
                         [this](const Traffic &traffic) {
                             if (traffic.direction == Traffic::Direction::FromFrame)
                                 reported.take(traffic.frame);
                         });
        QObject::connect(main->findChild<Link *>(), &Link::ended, main.get(), [this] {
            reported.forget();
            ++ends;
            // As long as it is away a window is not opened.
            working = false;
        });
        tried = window.make(*main, *frame, reported);
        main->show();
    }

    QJsonObject result()
    {
        QElapsedTimer time;
        time.start();
        Heartbeat heart([this] { beat(); });
        if (problem.isEmpty())
            goThrough();
        QJsonObject found{{u"problem"_s, problem}, {u"reached"_s, frame && lastReached >= transfer},
                          {u"lost"_s, lost},       {u"closed"_s, closed},
                          {u"unknown"_s, unknown}, {u"wasAway"_s, wasAway},
                          {u"agains"_s, agains}};
        working = false;
        tried.reset();
        main.reset();
        found[u"stillMs"_s] = heart.longestMs;
        found[u"machineMs"_s] = heart.machineMs.load();
        found[u"ms"_s] = int(time.elapsed());
        return found;
    }

private:
    bool isLinked() const
    {
        return main->connectState() == MainWindow::UsbConnected ||
               main->connectState() == MainWindow::SerialOpen;
    }
    void beat()
    {
        if (!working)
            return;
        if (const QString shown = tried->isOpen() ? tried->untrue() : QString();
            !shown.isEmpty() && problem.isEmpty())
            problem = u"it shows what no frame has said: "_s + shown;
        if (window.isQuiet && isLinked() && !frame->port().isEmpty() && ++beats % 8 == 0) {
            Frame query = command::request(command::Rotation, command::rotation::Query);
            main->OnWrite03(query.data());
        }
        if (isLinked() && (tried->isOpen() || opened))
            tried->goOn();
    }
    void connect()
    {
        QElapsedTimer sinceTry;
        const bool isConnected = QTest::qWaitFor(
            [&] {
                if (isLinked())
                    return true;
                const TriedFrame::Held held = frame->held();
                if (!held.plugged && isForGood()) {
                    QTest::qWait(300);
                    frame->plugAnother();
                } else if (held.plugged && !frame->port().isEmpty() &&
                           (!sinceTry.isValid() || sinceTry.hasExpired(300))) {
                    tried->openPort();
                    sinceTry.start();
                }
                return isLinked();
            },
            PatienceMs);
        if (!isConnected)
            fail(u"the frame is not linked again"_s);
    }
    void fail(const QString &what)
    {
        if (problem.isEmpty())
            problem = what;
    }
    bool isForGood() const { return fault.line.endsWith(u"unplug"_s); }
    // Whether the last fault is over, or nothing comes any more by itself.
    bool isPast()
    {
        const int transfers = frame->held().transfers;
        if (transfers > lastReached || !sinceTransfer.isValid())
            sinceTransfer.start();
        lastReached = std::max(lastReached, transfers);
        if (lastReached >= lastFault && !sinceFault.isValid())
            sinceFault.start();
        return (sinceFault.isValid() && sinceFault.hasExpired(OverMs)) ||
               sinceTransfer.hasExpired(QuietMs);
    }

    void goThrough()
    {
        connect();
        const int endsBefore = ends;
        tried->open();
        opened = true;
        working = ends == endsBefore;
        if (!QTest::qWaitFor([&] { return isPast() || ends > endsBefore; }, 2 * PatienceMs))
            fail(u"it never stops asking"_s);
        if (fault.line.isEmpty())
            disturb();
        lost = ends > endsBefore;
        if (lost) {
            lastReached = std::max(lastReached, transfer);
            QTest::qWait(60);
            closed = !tried->isOpen();
            unknown = !closed && tried->isUnknown();
            wasAway = !isLinked(); // still
            if (!closed && wasAway) {
                const QString shown = tried->untrue();
                if (!shown.isEmpty())
                    fail(u"it still shows what the frame has said that is gone: "_s + shown);
            }
            connect();
            if (!tried->isOpen())
                tried->open();
            working = true;
        }
        tried->beginAnew();
        while (!QTest::qWaitFor([&] { return tried->isRight(); }, window.patienceMs)) {
            if (++agains > fault.agains) {
                fail(u"it never shows what the frame is like"_s);
                break;
            }
            connect();
            tried->again();
        }
    }
    // What no plan says.
    void disturb()
    {
        if (fault.name == u"Reset"_s) {
            Frame reset = command::request(command::Settings, command::settings::Reset);
            main->OnWrite03(reset.data());
            reset = command::request(command::OldReset, command::oldreset::Reset);
            main->OnWrite03(reset.data());
            QTest::qWait(300);
            return;
        }
        for (int i = 0; i < 12; ++i) {
            for (const UCHAR axis : {command::scan::AxisX, command::scan::AxisY}) {
                Frame request = command::request(command::Scan, axis);
                main->OnWrite03(request.data());
            }
            QTest::qWait(130);
        }
    }

    static constexpr int PatienceMs = 10000;
    static constexpr int OverMs = 600; // after which a fault that begins is over
    static constexpr int QuietMs = 2500;

    const Window window;
    const Fault fault;
    const int transfer;
    int lastFault = 0;
    SettingsHome home;
    QString problem;
    std::unique_ptr<TriedFrame> frame;
    Reported reported;
    std::unique_ptr<MainWindow> main;
    std::unique_ptr<TriedWindow> tried;
    bool opened = false;
    bool working = false;
    int beats = 0;
    int ends = 0; // of links
    int lastReached = 0;
    QElapsedTimer sinceTransfer;
    QElapsedTimer sinceFault; // the last one
    bool lost = false;
    bool closed = false;
    bool unknown = false;
    bool wasAway = false;
    int agains = 0;
};

} // namespace tried
