// SPDX-License-Identifier: GPL-3.0-or-later

#include "stoppablethread.h"

#include "link_log.h"

StoppableThread::StoppableThread(std::chrono::milliseconds theBudget)
    : budget(theBudget)
{
}

StoppableThread::~StoppableThread() = default;

bool StoppableThread::start(Priority priority)
{
    if (isRunning())
        return true;
    {
        const std::lock_guard lock(stopLock);
        stop = false;
    }
    QThread::start(priority);
    // In this order: it may end in between.
    return isRunning() || isFinished();
}

void StoppableThread::terminate()
{
    {
        const std::lock_guard lock(stopLock);
        stop = true;
    }
    stopChanged.notify_all();
}

bool StoppableThread::wait(QDeadlineTimer deadline)
{
    if (!QThread::wait(deadline))
        return false;
    // What the thread did is seen here through this lock too, which the thread sanitizer knows;
    // it cannot see Qt's.
    const std::lock_guard lock(stopLock);
    return true;
}

bool StoppableThread::wait(unsigned long milliseconds)
{
    return wait(QDeadlineTimer(qint64(milliseconds)));
}

bool StoppableThread::wait()
{
    if (wait(QDeadlineTimer(budget)))
        return true;
    qCWarning(lcLink, "%s has been stuck in one call for %lld ms and is killed",
              metaObject()->className(), static_cast<long long>(budget.count()));
    QThread::terminate();
    return wait(QDeadlineTimer(budget));
}

bool StoppableThread::stopRequested() const
{
    const std::lock_guard lock(stopLock);
    return stop;
}

bool StoppableThread::pause(std::chrono::milliseconds duration)
{
    const auto end = std::chrono::steady_clock::now() + duration;
    std::unique_lock lock(stopLock);
    return !stopChanged.wait_until(lock, end, [this] { return stop; });
}

void StoppableThread::finish()
{
    terminate();
    emit terminated();
    wait();
}
