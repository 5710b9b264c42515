// SPDX-License-Identifier: GPL-3.0-or-later

#include "fastclock.h"

#include <QTest>

#include <chrono>
#include <thread>

using namespace std::chrono_literals;

class TestFastClock : public QObject
{
    Q_OBJECT

private slots:
    void the_clock_runs_faster_for_threads_and_events_alike()
    {
        using Clock = std::chrono::steady_clock;
        constexpr int Speed = 120;
        constexpr int Patience = 5; // by how much longer a busy machine may take
        constexpr auto Time = 60s;
        fastclock::setSpeed(Speed);
        const double realBegin = fastclock::realSeconds();
        const auto begin = Clock::now();
        QTest::qWait(int(std::chrono::milliseconds(Time).count()));
        std::this_thread::sleep_for(Time);
        const auto took = Clock::now() - begin;
        QVERIFY(took >= 2 * Time);
        QVERIFY(took < Patience * 2 * Time);
        const double real = fastclock::realSeconds() - realBegin;
        QVERIFY2(real >= 0.9 && real < Patience, qPrintable(QString::number(real)));
    }
};

int main(int argc, char **argv)
{
    // By this clock.
    qputenv("QTEST_FUNCTION_TIMEOUT", "2000000000");
    const QCoreApplication app(argc, argv);
    TestFastClock test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_fastclock.moc"
