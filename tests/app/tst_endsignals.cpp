// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/endsignals.h"
#include "device/filedescriptor.h"

#include <QSignalSpy>
#include <QTest>

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

using namespace std::chrono_literals;

// Signals that nobody hears any more would end this test.
class TestEndSignals : public QObject
{
    Q_OBJECT

private slots:
    void each_is_heard_in_the_event_loop_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGHUP") << SIGHUP;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGTERM") << SIGTERM;
    }
    void each_is_heard_in_the_event_loop()
    {
        QFETCH(const int, signal);
        const EndSignals signalsHeard;
        QSignalSpy asked(&signalsHeard, &EndSignals::asked);
        for (int times = 1; times <= 2; ++times) {
            QCOMPARE(::raise(signal), 0);
            QCOMPARE(asked.size(), times - 1);
            QTRY_COMPARE(asked.size(), times);
        }
        QTest::qWait(20);
        QCOMPARE(asked.size(), 2);
    }

    void several_at_once_ask_once()
    {
        const EndSignals signalsHeard;
        QSignalSpy asked(&signalsHeard, &EndSignals::asked);
        for (const int signal : {SIGINT, SIGTERM, SIGTERM})
            QCOMPARE(::raise(signal), 0);
        QTRY_COMPARE(asked.size(), 1);
        QTest::qWait(20);
        QCOMPARE(asked.size(), 1);
    }

    void a_call_that_they_interrupt_goes_on()
    {
        const EndSignals signalsHeard;
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        const FileDescriptor readEnd(ends[0]);
        const FileDescriptor writeEnd(ends[1]);
        std::atomic<bool> begun = false;
        ssize_t length = -1;
        std::thread reader([&] {
            char byte = 0;
            begun = true;
            length = ::read(readEnd.get(), &byte, 1);
        });
        while (!begun)
            std::this_thread::sleep_for(1ms);
        std::this_thread::sleep_for(20ms);
        ::pthread_kill(reader.native_handle(), SIGINT);
        std::this_thread::sleep_for(20ms);
        const ssize_t written = ::write(writeEnd.get(), "x", 1);
        reader.join();
        QCOMPARE(written, 1);
        QCOMPARE(length, 1);
    }

    void without_somebody_who_hears_they_end_the_program_again()
    {
        {
            const EndSignals signalsHeard;
        }
        for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
            struct sigaction action
            {
            };
            QCOMPARE(::sigaction(signal, nullptr, &action), 0);
            QVERIFY(action.sa_handler == SIG_DFL);
        }
        // And the next one hears them.
        const EndSignals signalsHeard;
        QSignalSpy asked(&signalsHeard, &EndSignals::asked);
        ::raise(SIGHUP);
        QTRY_COMPARE(asked.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestEndSignals)
#include "tst_endsignals.moc"
