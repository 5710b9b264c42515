// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/calibrationcheck.h"

#include <QTest>

using Verdict = CalibrationCheck::Verdict;

class TestCalibrationCheck : public QObject
{
    Q_OBJECT

private:
    // Touches every cross, so far beside it.
    static void touchAll(CalibrationCheck &check, const QList<QPointF> &beside)
    {
        for (int number = 0; number < CalibrationCheck::Crosses; ++number)
            QVERIFY(check.take(check.cross(number) + beside.value(number), 1000 * number));
    }

private slots:
    void crosses_stand_in_the_corners_on_the_edges_and_in_the_middle()
    {
        const CalibrationCheck check({.pixels = {1920, 1080}, .millimetres = {}, .scale = 1});
        const QPoint places[] = {{67, 67},    {1852, 67},  {1852, 1012}, {67, 1012}, {960, 67},
                                 {1852, 540}, {960, 1012}, {67, 540},    {960, 540}};
        for (int number = 0; number < CalibrationCheck::Crosses; ++number)
            QCOMPARE(check.cross(number), places[number]);
    }

    void a_cross_has_room_for_its_arms_on_a_small_screen()
    {
        const CalibrationCheck check({.pixels = {800, 600}, .millimetres = {}, .scale = 2});
        QCOMPARE(check.cross(0), QPoint(48, 48));
        QCOMPARE(check.cross(2), QPoint(751, 551));
    }

    void crosses_are_asked_for_one_after_the_other()
    {
        CalibrationCheck check({.pixels = {1000, 800}, .millimetres = {}, .scale = 1});
        QCOMPARE(check.asked(), 0);
        QVERIFY(check.take({50, 54}, 1000));
        QCOMPARE(check.asked(), 1);
        QCOMPARE(check.touch(0), QPointF(50, 54));
        QCOMPARE(check.distance(0), 4.0);
        check.takeBack();
        check.takeBack();
        QCOMPARE(check.asked(), 0);
        QVERIFY(check.take({53, 54}, 1001));
        QCOMPARE(check.distance(0), 5.0);
        check.begin();
        QCOMPARE(check.asked(), 0);
    }

    void a_touch_that_bounces_counts_once()
    {
        CalibrationCheck check({.pixels = {1000, 800}, .millimetres = {}, .scale = 1});
        QVERIFY(check.take({50, 50}, 1000));
        QVERIFY(!check.take({50, 50}, 1000));
        QVERIFY(!check.take({50, 50}, 1299));
        QCOMPARE(check.asked(), 1);
        QVERIFY(check.take({949, 50}, 1300));
        // Another clock: that of another device.
        QVERIFY(check.take({949, 749}, 20));
    }

    void what_comes_after_the_last_cross_changes_nothing()
    {
        CalibrationCheck check({.pixels = {1000, 800}, .millimetres = {}, .scale = 1});
        touchAll(check, {});
        QVERIFY(check.isFinished());
        QVERIFY(!check.take({0, 0}, 99000));
        QCOMPARE(check.meanDistance(), 0.0);
    }

    void mean_and_worst_are_those_of_all_crosses()
    {
        CalibrationCheck check(
            {.pixels = {1920, 1080}, .millimetres = {960, 540}, .scale = 1}); // 0.5 mm a pixel
        touchAll(check, {{0, 0}, {3, 4}, {0, -2}, {0, 0}, {-6, 8}, {1, 0}});
        QCOMPARE(check.distance(4), 10.0);
        QCOMPARE(check.worst(), 4);
        QCOMPARE(check.meanDistance(), 2.0); // 0 5 2 0 10 1 0 0 0
        QCOMPARE(check.distanceInMillimetres(4), 5.0);
        QCOMPARE(check.meanInMillimetres(), 1.0);
    }

    void pixels_need_not_be_square()
    {
        CalibrationCheck check(
            {.pixels = {2000, 1000}, .millimetres = {420, 200}, .scale = 1}); // 0.21 x 0.2 mm
        touchAll(check, {{100, 0}, {0, 100}, {-100, 0}});
        QCOMPARE(check.distanceInMillimetres(0), 21.0);
        QCOMPARE(check.distanceInMillimetres(1), 20.0);
        QCOMPARE(check.distanceInMillimetres(2), 21.0);
    }

    // Every touch is near some cross, as the frame is turned by 180 degrees.
    void a_frame_that_is_turned_does_not_pass()
    {
        CalibrationCheck check({.pixels = {1000, 800}, .millimetres = {}, .scale = 1});
        for (int number = 0; number < CalibrationCheck::Crosses; ++number) {
            const QPoint cross = check.cross(number);
            check.take(QPoint(999, 799) - cross, 1000 * number);
        }
        QVERIFY(check.isFinished());
        QCOMPARE(check.verdict(), Verdict::CalibrateAgain);
    }

    void a_size_is_believed_that_a_screen_with_a_frame_can_have_data()
    {
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<QSizeF>("millimetres");
        QTest::addColumn<bool>("isBelieved");
        const QSize fullHd(1920, 1080);
        QTest::newRow("none") << fullHd << QSizeF() << false;
        QTest::newRow("no height") << fullHd << QSizeF(500, 0) << false;
        QTest::newRow("24 inches") << fullHd << QSizeF(531, 299) << true;
        QTest::newRow("65 inches") << fullHd << QSizeF(1428, 804) << true;
        QTest::newRow("a postcard") << fullHd << QSizeF(160, 90) << false;
        QTest::newRow("its proportions") << fullHd << QSizeF(16, 9) << false;
        QTest::newRow("ten inches") << QSize(1280, 800) << QSizeF(217, 136) << true;
        QTest::newRow("a wall") << fullHd << QSizeF(9600, 5400) << true;
        QTest::newRow("a house") << fullHd << QSizeF(9700, 5456) << false;
        QTest::newRow("not turned with its screen")
            << QSize(1080, 1920) << QSizeF(531, 299) << false;
        QTest::newRow("turned with it") << QSize(1080, 1920) << QSizeF(299, 531) << true;
    }
    void a_size_is_believed_that_a_screen_with_a_frame_can_have()
    {
        QFETCH(const QSize, pixels);
        QFETCH(const QSizeF, millimetres);
        QFETCH(const bool, isBelieved);
        const CalibrationCheck check({.pixels = pixels, .millimetres = millimetres, .scale = 1});
        QCOMPARE(check.pixelMillimetres().has_value(), isBelieved);
    }

    void the_verdict_has_the_greater_of_two_limits_data()
    {
        QTest::addColumn<QSizeF>("millimetres");
        QTest::addColumn<qreal>("scale");
        QTest::addColumn<qreal>("worst");
        QTest::newRow("size unknown") << QSizeF() << 1.0 << 12.0;
        QTest::newRow("scaled") << QSizeF() << 2.0 << 24.0;
        QTest::newRow("pixels of 0.2 mm") << QSizeF(400, 200) << 1.0 << 20.0;
        QTest::newRow("pixels of 0.5 mm") << QSizeF(1000, 500) << 1.0 << 12.0;
        QTest::newRow("pixels of 0.2 mm, scaled") << QSizeF(400, 200) << 2.0 << 24.0;
        // Good whichever way the touch is off.
        QTest::newRow("wider than high") << QSizeF(500, 230) << 1.0 << 16.0;
        QTest::newRow("higher than wide") << QSizeF(460, 250) << 1.0 << 16.0;
    }
    void the_verdict_has_the_greater_of_two_limits()
    {
        QFETCH(const QSizeF, millimetres);
        QFETCH(const qreal, scale);
        QFETCH(const qreal, worst);
        CalibrationCheck check(
            {.pixels = {2000, 1000}, .millimetres = millimetres, .scale = scale});
        QCOMPARE(check.largestGoodWorst(), worst);
        QCOMPARE(check.largestGoodMean(), worst / 2);

        touchAll(check, {{worst - 0.25, 0}});
        QCOMPARE(check.verdict(), Verdict::Passed);
        check.begin();
        touchAll(check, {{worst + 0.25, 0}});
        QCOMPARE(check.verdict(), Verdict::CalibrateAgain);
    }

    // No touch is far off, but all are: that is not the finger.
    void a_shift_of_the_whole_screen_does_not_pass()
    {
        CalibrationCheck check({.pixels = {1920, 1080}, .millimetres = {}, .scale = 1});
        touchAll(check, QList<QPointF>(9, QPointF(6, 0)));
        QCOMPARE(check.worst(), 0); // the first of those that are
        QCOMPARE(check.verdict(), Verdict::Passed);
        check.begin();
        touchAll(check, QList<QPointF>(9, QPointF(6.5, 0)));
        QCOMPARE(check.verdict(), Verdict::CalibrateAgain);
    }
};

QTEST_APPLESS_MAIN(TestCalibrationCheck)
#include "tst_calibrationcheck.moc"
