// SPDX-License-Identifier: GPL-3.0-or-later

// What becomes of a thread that does not end. The thread sanitizer cannot follow a killed thread,
// so this stands apart from what it looks at.

#include "device/readreportthread.h"
#include "device/writereportthread.h"

#include <QRegularExpression>
#include <QTest>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Sits in one call that no request to end reaches.
class StuckThread : public StoppableThread
{
    Q_OBJECT
public:
    static constexpr auto StuckFor = 30s;

    StuckThread()
        : StoppableThread(300ms)
    {
    }
    ~StuckThread() override { finish(); }

    std::chrono::milliseconds stuckFor = StuckFor;
    std::atomic<bool> isStuck{false};
    std::atomic<bool> ended{false};

protected:
    void run() override
    {
        isStuck = true;
        std::this_thread::sleep_for(stuckFor);
        ended = true;
    }
};

// Pauses for longer than anybody waits, or ends at once.
class PausingThread : public StoppableThread
{
    Q_OBJECT
public:
    PausingThread()
        : StoppableThread(2s)
    {
    }
    ~PausingThread() override { finish(); }

    std::chrono::milliseconds pauses = 30s;
    std::atomic<bool> isPausing{false};

protected:
    void run() override
    {
        isPausing = true;
        if (pauses > 0ms)
            pause(pauses);
    }
};

class TestStoppableThread : public QObject
{
    Q_OBJECT

private slots:
    void a_thread_stuck_past_its_budget_is_killed_and_told_of()
    {
        const auto begin = std::chrono::steady_clock::now();
        {
            StuckThread thread;
            thread.start();
            QTRY_VERIFY(thread.isStuck);
            thread.terminate();
            QTest::ignoreMessage(QtWarningMsg, "StuckThread has been stuck in one call for 300 ms "
                                               "and is killed");
            QVERIFY(thread.wait());
            QVERIFY(thread.isFinished());
        }
        const auto took = std::chrono::steady_clock::now() - begin;
        QVERIFY(took >= 300ms);
        QVERIFY(took < 5s);
    }

    void a_thread_that_ends_within_its_budget_is_left_to_it()
    {
        StuckThread thread;
        thread.stuckFor = 150ms;
        thread.start();
        QTRY_VERIFY(thread.isStuck);
        thread.terminate();
        QVERIFY(thread.wait());
        QVERIFY(thread.ended);
    }

    void a_pause_ends_when_the_thread_is_to_end()
    {
        QTest::failOnWarning(QRegularExpression(u"is killed"_s));
        PausingThread thread;
        QVERIFY(thread.start());
        QTRY_VERIFY(thread.isPausing);
        std::this_thread::sleep_for(50ms);
        thread.terminate();
        QVERIFY(thread.wait());
    }

    void a_thread_that_ends_at_once_was_started_all_the_same()
    {
        PausingThread thread;
        thread.pauses = 0ms;
        for (int i = 0; i < 2000; ++i) {
            QVERIFY(thread.start());
            QVERIFY(thread.wait());
        }
    }

    void the_usual_budget_outlasts_a_transfer_that_the_kernel_gives_up_after_ten_seconds()
    {
        constexpr auto TransferTimeout = 10s;
        QVERIFY(StoppableThread::StopBudget == TransferTimeout + 2s);
        Frame buffer{};
        const ReadReportThread reader(buffer.data());
        const writereportthread writer(buffer.data());
        QCOMPARE(reader.stopBudget(), StoppableThread::StopBudget);
        QCOMPARE(writer.stopBudget(), StoppableThread::StopBudget);
    }
};

QTEST_GUILESS_MAIN(TestStoppableThread)
#include "tst_stoppablethread.moc"
