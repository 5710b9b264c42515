// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/pacing.h"
#include "tests/support/quickest.h"

#include <QTest>

#include <thread>

using namespace std::chrono_literals;

class TestPacing : public QObject
{
    Q_OBJECT

private slots:
    void being_a_little_late_shortens_the_next_sleep()
    {
        const auto slept = quickest(30ms, [] {
            Pacer pacer;
            std::this_thread::sleep_for(30ms);
            return took([&] { pacer.sleep(50ms); });
        });
        QVERIFY(slept < 30ms);
    }

    // Otherwise whatever comes after a stall would run without any pause until it has caught up.
    void after_a_stall_every_sleep_is_whole_again()
    {
        Pacer pacer;
        pacer.sleep(1ms);
        std::this_thread::sleep_for(60ms);
        const auto begin = Pacer::Clock::now();
        pacer.sleep(10ms);
        QVERIFY(Pacer::Clock::now() - begin >= 10ms);
        pacer.sleep(10ms);
        QVERIFY(Pacer::Clock::now() - begin >= 20ms);
    }

    void a_stall_of_little_more_than_one_sleep_begins_anew_too()
    {
        Pacer pacer;
        std::this_thread::sleep_for(65ms);
        const auto begin = Pacer::Clock::now();
        pacer.sleep(50ms);
        QVERIFY(Pacer::Clock::now() - begin >= 50ms);
    }
};

QTEST_GUILESS_MAIN(TestPacing)
#include "tst_pacing.moc"
