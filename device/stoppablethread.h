// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDeadlineTimer>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <mutex>

// A thread that is asked to end instead of being killed: terminate() lets the call that it is in
// finish and ends its pauses at once. A subclass ends its run() when stopRequested(), and calls
// finish() in its destructor.
class StoppableThread : public QThread
{
    Q_OBJECT
public:
    // Longer than the ten seconds that hiddev gives a transfer.
    static constexpr auto StopBudget = std::chrono::milliseconds(12000);

    // budget: how long wait() gives a call in progress.
    explicit StoppableThread(std::chrono::milliseconds budget = StopBudget);
    ~StoppableThread() override;

    // Nothing happens while it runs, also when it has been asked to end but has not ended yet.
    // False when the system has no room for another thread.
    bool start(Priority priority = InheritPriority);
    virtual void terminate();
    // True when the thread has ended. One that is still busy after the budget is killed.
    bool wait();
    // True when the thread has ended by itself in time, or did not run.
    bool wait(QDeadlineTimer deadline);
    bool wait(unsigned long milliseconds);
    std::chrono::milliseconds stopBudget() const { return budget; }

signals:
    void terminated();

protected:
    bool stopRequested() const;
    // Sleeps for duration; returns false, at once, when the thread is to end.
    bool pause(std::chrono::milliseconds duration);
    void finish();

private:
    const std::chrono::milliseconds budget;
    mutable std::mutex stopLock; // protects stop
    std::condition_variable stopChanged;
    bool stop = false;
};
