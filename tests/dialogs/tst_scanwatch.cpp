// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/scanwatch.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr UCHAR Counts = 0;
constexpr UCHAR X = 1;
constexpr UCHAR Y = 2;

const QString NoAnswer = u"No answer from the touch frame"_s;

} // namespace

class TestScanWatch : public QObject
{
    Q_OBJECT

private slots:
    void a_scan_has_as_many_pages_as_its_lights_fill()
    {
        QCOMPARE(ScanWatch::pagesOf(0, 55), 1);
        QCOMPARE(ScanWatch::pagesOf(1, 55), 1);
        QCOMPARE(ScanWatch::pagesOf(55, 55), 1);
        QCOMPARE(ScanWatch::pagesOf(56, 55), 2);
        QCOMPARE(ScanWatch::pagesOf(500, 55), 10);
    }

    void a_scan_arrives_between_its_first_page_and_its_last()
    {
        ScanWatch watch;
        QVERIFY(!watch.isWaiting() && !watch.isArriving());
        watch.asked(X, 3);
        QVERIFY(watch.isWaiting() && !watch.isArriving());
        watch.pageCame(X, 1, 3);
        QVERIFY(watch.isWaiting() && watch.isArriving());
        watch.pageCame(X, 2, 3);
        QVERIFY(watch.isWaiting() && watch.isArriving());
        watch.pageCame(X, 3, 3);
        QVERIFY(!watch.isWaiting() && !watch.isArriving());
        // The next one has not begun.
        watch.asked(Y, 2);
        QVERIFY(watch.isWaiting() && !watch.isArriving());
    }

    void whoever_asks_again_waits_for_the_first_page_anew()
    {
        ScanWatch watch;
        watch.asked(X, 3);
        watch.pageCame(X, 2, 3);
        watch.asked(X, 3);
        QVERIFY(watch.isWaiting() && !watch.isArriving());
    }

    void a_page_that_was_not_asked_for_is_no_sign_of_a_scan_that_comes()
    {
        ScanWatch watch;
        watch.asked(Y, 2);
        watch.pageCame(Y, 1, 2);
        QVERIFY(watch.isArriving());
        QTRY_VERIFY(!watch.isArriving()); // it stopped
        watch.pageCame(X, 1, 3);
        QVERIFY(!watch.isArriving());
    }

    void each_page_that_is_still_to_come_takes_a_report()
    {
        ScanWatch watch;
        QCOMPARE(watch.backlogMs(), 0);
        watch.asked(Counts);
        QCOMPARE(watch.backlogMs(), 70);
        watch.asked(X, 10);
        QCOMPARE(watch.backlogMs(), 770);
        watch.answered(Counts);
        QCOMPARE(watch.backlogMs(), 700);
        watch.pageCame(X, 4, 10);
        QCOMPARE(watch.backlogMs(), 420);
        watch.pageCame(Y, 1, 7); // not asked for
        QCOMPARE(watch.backlogMs(), 420);
        watch.pageCame(X, 5, 12); // a frame that has more lights than it said
        QCOMPARE(watch.backlogMs(), 490);
        watch.forget();
        QCOMPARE(watch.backlogMs(), 0);
    }

    void what_does_not_come_in_time_is_told_in_words()
    {
        const QStringList none(6);
        QStringList early;
        QStringList late;
        // A machine that was busy just then is asked once more.
        const QDeadlineTimer patience(20000);
        while (!watchForTwoSeconds(&early, &late))
            QVERIFY(!patience.hasExpired());
        QCOMPARE(early, none);
        const QString incomplete = u"Scan incomplete: page 1 of 3"_s;
        QCOMPARE(late, QStringList({NoAnswer, incomplete, incomplete, {}, {}, {}}));
    }

    void what_comes_late_comes_all_the_same()
    {
        ScanWatch watch;
        watch.asked(X, 3);
        QTRY_COMPARE(watch.overdue(), NoAnswer);
        watch.pageCame(X, 1, 3);
        QCOMPARE(watch.overdue(), QString());
        watch.forget();
        QVERIFY(!watch.isWaiting());
    }

private:
    // What is said of six scans, of which one is silent, one stops, one begins again and again, one
    // goes on, one waits behind another and one has come: after 1.5 seconds and after two. False if
    // it took so long to look that this tells nothing.
    static bool watchForTwoSeconds(QStringList *early, QStringList *late)
    {
        std::array<ScanWatch, 6> watches;
        auto &[silent, stopped, repeating, going, behind, done] = watches;
        const auto told = [&watches] {
            QStringList all;
            for (const ScanWatch &watch : watches)
                all.append(watch.overdue());
            return all;
        };
        QElapsedTimer time;
        time.start();
        const auto waitUntil = [&time](int ms) {
            if (time.elapsed() < ms)
                QThread::msleep(ulong(ms - time.elapsed()));
        };
        behind.asked(X, 10);
        behind.asked(Y, 7);
        behind.answered(X);
        for (ScanWatch *watch : {&silent, &stopped, &repeating, &going, &done})
            watch->asked(X, 3);
        for (ScanWatch *watch : {&stopped, &repeating, &going, &done})
            watch->pageCame(X, 1, 3);
        const qint64 began = time.elapsed();
        waitUntil(1500);
        // Asked again, it only begins again.
        repeating.asked(X, 3);
        repeating.pageCame(X, 1, 3);
        going.pageCame(X, 2, 3);
        done.answered(X);
        *early = told();
        if (began > 20 || time.elapsed() >= 1950)
            return false;
        waitUntil(2050);
        *late = told();
        return time.elapsed() < 2600;
    }
};

QTEST_GUILESS_MAIN(TestScanWatch)
#include "tst_scanwatch.moc"
